#include "kit/MsgBox.h"

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include <utility>

namespace discaro::kit {

namespace {

Answerer g_answerer;

QMessageBox::Icon iconOf(Icon icon) {
    switch (icon) {
    case Icon::Exclamation:
        return QMessageBox::Warning;
    case Icon::Critical:
        return QMessageBox::Critical;
    case Icon::Question:
        return QMessageBox::Question;
    case Icon::Information:
        return QMessageBox::Information;
    case Icon::None:
        break;
    }
    return QMessageBox::NoIcon;
}

QWidget* ownerOf(const Question& question) {
    if (question.parent)
        return question.parent->window();
    QWidget* modal = QApplication::activeModalWidget();
    return modal ? modal : QApplication::activeWindow();
}

// Keeps the box in front of its owner, and centred on it.
void tieToOwner(QWidget& box, QWidget* owner) {
    if (!owner || !owner->isVisible())
        return;
    box.winId(); // makes the native window, which can be told whom it belongs to
    box.windowHandle()->setTransientParent(owner->windowHandle());
    box.adjustSize();
    box.move(owner->frameGeometry().center() - box.rect().center());
}

// The box is no child of its owner, which may be gone before the answer comes.
Answer ask(const Question& question) {
    QMessageBox box(iconOf(question.icon), question.title, question.text, QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setDefaultButton(QMessageBox::Ok);
    box.setEscapeButton(QMessageBox::Ok);
    if (question.buttons == Buttons::OkCancel) {
        box.addButton(QMessageBox::Cancel);
        box.setEscapeButton(QMessageBox::Cancel);
    }
    box.setWindowModality(Qt::ApplicationModal);
    tieToOwner(box, ownerOf(question));
    return box.exec() == QMessageBox::Cancel ? Answer::Cancel : Answer::Ok;
}

} // namespace

Answer MsgBox(const QString& text, Buttons buttons, Icon icon, const QString& title,
              QWidget* parent) {
    const Question question{text, buttons, icon, title, parent};
    return g_answerer ? g_answerer(question) : ask(question);
}

Answerer setAnswerer(Answerer answerer) {
    return std::exchange(g_answerer, std::move(answerer));
}

} // namespace discaro::kit
