#include "kit/controls/ValueBox.h"

#include "kit/common/CellText.h"

#include <QtGui/QHelpEvent>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QToolTip>

namespace discaro::kit {

namespace {

// What a line edit keeps free at the sides of its text, and its caret's width.
constexpr int kSides = 6;

} // namespace

ValueBox::ValueBox(QWidget* parent)
    : TextBox(parent) {
    setReadOnly(true);
    auto& edit = static_cast<QLineEdit&>(editor());
    edit.setFrame(false);
    QPalette colours = edit.palette();
    colours.setColor(QPalette::Base, Qt::transparent);
    edit.setPalette(colours);
    connect(this, &TextBox::GotFocus, this, &ValueBox::showLine);
    connect(this, &TextBox::LostFocus, this, &ValueBox::showLine);
}

void ValueBox::setText(const QString& text) {
    m_text = text;
    showLine();
}

void ValueBox::setElideMode(Qt::TextElideMode mode) {
    m_mode = mode;
    showLine();
}

void ValueBox::showLine() {
    const QString whole = oneLine(m_text);
    const bool shortened = !editor().hasFocus();
    const int room = std::max(width() - kSides, 0);
    const QString shown = shortened ? fontMetrics().elidedText(whole, m_mode, room) : whole;
    if (shown != shownText())
        TextBox::setText(shown);
}

bool ValueBox::event(QEvent* event) {
    const bool result = TextBox::event(event);
    const auto type = event->type();
    if (type == QEvent::Resize || type == QEvent::FontChange)
        showLine();
    if (type != QEvent::ToolTip || shownText() == m_text)
        return result;
    event->accept();
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tipText(m_text), this);
    return true;
}

} // namespace discaro::kit
