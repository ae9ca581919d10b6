#include "kit/program/MsgBox.h"

#include <QtCore/QPointer>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

#include <algorithm>
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

// Stands in front of its owner and centred on it. It is no child of the owner, which may be gone before the answer
// comes.
class Box : public QMessageBox {
public:
    Box(const kit::Question& question, QWidget* owner)
        : QMessageBox(iconOf(question.icon), question.title, question.text, Ok) {
        if (!owner || !owner->isVisible())
            return;
        m_owner = owner;
        winId(); // makes the native window, which can be told whom it belongs to
        windowHandle()->setTransientParent(owner->windowHandle());
    }

protected:
    // Only here the text has been wrapped and the box has its size.
    void showEvent(QShowEvent* event) override {
        QMessageBox::showEvent(event);
        if (m_owner)
            centreOn(*m_owner);
    }

private:
    // Without the frames, which are alike as far as both have one: its own is not known yet.
    void centreOn(const QWidget& owner) {
        const QRect inner = owner.geometry();
        const QRect outer = owner.frameGeometry();
        const QRect room = owner.screen()->availableGeometry().adjusted(
            inner.left() - outer.left(), inner.top() - outer.top(), inner.right() - outer.right(),
            inner.bottom() - outer.bottom());
        QRect place(QPoint(), size());
        place.moveCenter(inner.center());
        place.moveRight(std::min(place.right(), room.right()));
        place.moveBottom(std::min(place.bottom(), room.bottom()));
        place.moveLeft(std::max(place.left(), room.left()));
        place.moveTop(std::max(place.top(), room.top()));
        setGeometry(place);
    }

    QPointer<QWidget> m_owner;
};

Answer ask(const Question& question) {
    Box box(question, ownerOf(question));
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    box.setDefaultButton(QMessageBox::Ok);
    box.setEscapeButton(QMessageBox::Ok);
    if (question.buttons == Buttons::OkCancel) {
        box.addButton(QMessageBox::Cancel);
        box.setEscapeButton(QMessageBox::Cancel);
    }
    box.setWindowModality(Qt::ApplicationModal);
    return box.exec() == QMessageBox::Cancel ? Answer::Cancel : Answer::Ok;
}

} // namespace

Answer MsgBox(const QString& text, Buttons buttons, Icon icon, const QString& title, QWidget* parent) {
    const Question question{text, buttons, icon, title, parent};
    return g_answerer ? g_answerer(question) : ask(question);
}

Answerer setAnswerer(Answerer answerer) {
    return std::exchange(g_answerer, std::move(answerer));
}

} // namespace discaro::kit
