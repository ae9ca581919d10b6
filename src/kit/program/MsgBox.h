#pragma once

#include <QtCore/QString>
#include <QtWidgets/QWidget>

#include <functional>

namespace discaro::kit {

enum class Icon { None, Exclamation, Critical, Question, Information };
enum class Buttons { Ok, OkCancel };
enum class Answer { Ok, Cancel };

struct Question {
    QString text;
    Buttons buttons = Buttons::Ok;
    Icon icon = Icon::None;
    QString title;
    QWidget* parent = nullptr;
};

// Shows a box and waits for its answer. The text is plain: it may hold names with any characters,
// and the user can select and copy it. Closing the box or Escape is Cancel where there is one, else
// OK. Without a parent the box belongs to the window in front. It stands centred on
// the window that it belongs to, on the screen where there is none.
Answer MsgBox(const QString& text, Buttons buttons, Icon icon, const QString& title, QWidget* parent = nullptr);

// Whoever answers questions: the screen, or a script of a test.
using Answerer = std::function<Answer(const Question&)>;

// Puts another answerer in place (none: the screen) and returns the one before.
Answerer setAnswerer(Answerer answerer);

} // namespace discaro::kit
