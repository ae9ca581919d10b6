#include "support/windows/FormProbe.h"

#include "kit/controls/TextBox.h"

#include <QtGui/QAccessible>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QRadioButton>

#include <cmath>

namespace discaro::test {

namespace {

// The widget that the keyboard meets.
QWidget* keyboardTarget(QWidget* widget) {
    while (widget->focusProxy())
        widget = widget->focusProxy();
    return widget;
}

bool fits(const QLabel& label) {
    const int flags = static_cast<int>(label.alignment()) | (label.wordWrap() ? Qt::TextWordWrap : 0);
    const int margin = label.margin();
    const QRect room = label.contentsRect().adjusted(margin, margin, -margin, -margin);
    const QRect unbounded(0, 0, room.width(), 100000);
    const QRect needed = label.fontMetrics().boundingRect(unbounded, flags, label.text());
    // Heights round up; the last row of pixels is below every letter.
    return needed.width() <= room.width() && needed.height() <= room.height() + 1;
}

bool fits(const QAbstractButton& button) {
    const QString text = QString(button.text()).remove(u'&');
    const QSize needed = button.fontMetrics().size(Qt::TextSingleLine, text);
    return needed.width() <= button.width() && needed.height() <= button.height();
}

bool fits(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget))
        return fits(*label);
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return fits(*button);
    return true;
}

} // namespace

void click(QWidget& control) {
    ASSERT_TRUE(control.isEnabled()) << control.objectName().toStdString();
    ASSERT_TRUE(control.isVisible()) << control.objectName().toStdString();
    // Boxes and options answer only where they draw something.
    const bool atLeft = qobject_cast<QCheckBox*>(&control) || qobject_cast<QRadioButton*>(&control);
    const QPoint where(atLeft ? 8 : control.width() / 2, control.height() / 2);
    QTest::mouseClick(&control, Qt::LeftButton, {}, where);
}

void typeInto(QWidget& control, const char* text) {
    ASSERT_TRUE(control.isEnabled()) << control.objectName().toStdString();
    QTest::keyClicks(keyboardTarget(&control), QString::fromUtf8(text));
}

void hover(QWidget& control) {
    QMouseEvent move(QEvent::MouseMove, control.rect().center(), control.mapToGlobal(control.rect().center()),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&control, &move);
}

std::vector<std::string> cutTexts(const kit::Form& form) {
    std::vector<std::string> cut;
    for (const auto& control : form.controls()) {
        const auto* widget = qobject_cast<const QWidget*>(control.object.data());
        if (widget && !widget->isHidden() && !fits(*widget))
            cut.push_back(widget->objectName().toStdString());
    }
    return cut;
}

std::vector<std::string> tabOrder(const kit::Form& form) {
    std::vector<std::string> order;
    for (QWidget* widget = form.nextInFocusChain(); widget != &form; widget = widget->nextInFocusChain())
        for (const auto& control : form.controls()) {
            auto* declared = qobject_cast<QWidget*>(control.object.data());
            const bool reached = declared && keyboardTarget(declared) == widget;
            if (reached && (declared->focusPolicy() & Qt::TabFocus))
                order.push_back(declared->objectName().toStdString());
        }
    return order;
}

std::vector<std::string> speechless(const kit::Form& form) {
    std::vector<std::string> names;
    for (const auto& control : form.controls()) {
        auto* widget = qobject_cast<QWidget*>(control.object.data());
        if (!widget || widget->focusPolicy() == Qt::NoFocus)
            continue;
        QAccessibleInterface* voice = QAccessible::queryAccessibleInterface(keyboardTarget(widget));
        if (!voice || voice->text(QAccessible::Name).trimmed().isEmpty())
            names.push_back(widget->objectName().toStdString());
    }
    return names;
}

LargerFont::LargerFont(double factor)
    : m_before(QApplication::font()) {
    QFont larger = m_before;
    larger.setPixelSize(static_cast<int>(std::lround(m_before.pixelSize() * factor)));
    QApplication::setFont(larger);
}

LargerFont::~LargerFont() {
    QApplication::setFont(m_before);
}

} // namespace discaro::test
