#include "kit/Divider.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

namespace discaro::kit {

Divider::Divider(QWidget* parent)
    : QWidget(parent) {
    setCursor(Qt::SplitHCursor);
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

void Divider::paintEvent(QPaintEvent*) {
    QStyleOption option;
    option.initFrom(this);
    option.state |= QStyle::State_Horizontal;
    QPainter painter(this);
    style()->drawControl(QStyle::CE_Splitter, &option, &painter, this);
}

} // namespace discaro::kit
