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
    m_grip = event->position().toPoint().x();
}

void Divider::mouseMoveEvent(QMouseEvent* event) {
    if (event->buttons() & Qt::LeftButton)
        emit Moved(mapToParent(event->position().toPoint()).x() - m_grip);
}

void Divider::mouseDoubleClickEvent(QMouseEvent* event) {
    m_grip = event->position().toPoint().x();
    if (event->button() == Qt::LeftButton)
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
