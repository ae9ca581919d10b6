#include "kit/controls/Divider.h"

#include "kit/common/Keys.h"
#include "kit/common/WindowScale.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

namespace discaro::kit {

namespace {

constexpr int kStep = 8; // of a key, in logical pixels

} // namespace

Divider::Divider(QWidget* parent)
    : QWidget(parent) {
    setCursor(Qt::SplitHCursor);
    setFocusPolicy(Qt::TabFocus); // the mouse leaves the focus where it is
}

void Divider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_held = true;
    m_grip = event->position().toPoint().x();
}

void Divider::mouseMoveEvent(QMouseEvent* event) {
    if (m_held && event->buttons() & Qt::LeftButton)
        emit Moved(mapToParent(event->position().toPoint()).x() - m_grip);
}

void Divider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_held = false;
}

void Divider::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_held = false;
    emit DblClick();
}

void Divider::keyPressEvent(QKeyEvent* event) {
    const int step = scaledLength(kStep);
    if (event->key() == Qt::Key_Left)
        emit Moved(x() - step);
    else if (event->key() == Qt::Key_Right)
        emit Moved(x() + step);
    else if (event->key() == Qt::Key_Home)
        emit Moved(0);
    else if (event->key() == Qt::Key_End)
        emit Moved(parentWidget()->width());
    else if (isEnter(*event))
        emit DblClick();
    else
        QWidget::keyPressEvent(event);
}

void Divider::paintEvent(QPaintEvent*) {
    QStyleOption option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    QPainter painter(this);
    if (hasFocus())
        painter.fillRect(rect(), palette().highlight());
    style()->drawControl(QStyle::CE_Splitter, &option, &painter, this);
}

} // namespace discaro::kit
