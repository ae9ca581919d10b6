#include "kit/display/Picture.h"

#include "kit/display/ImageList.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

namespace discaro::kit {

Picture::Picture(QWidget* parent)
    : QWidget(parent) {}

void Picture::setSource(const QString& resource) {
    m_drawing = pictureIcon(resource);
    update();
}

void Picture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    m_drawing.paint(&painter, rect());
}

void Picture::mousePressEvent(QMouseEvent* event) {
    emit MouseDown(event->position().toPoint(), event->globalPosition().toPoint());
}

void Picture::mouseMoveEvent(QMouseEvent* event) {
    emit MouseMove(event->position().toPoint(), event->globalPosition().toPoint());
}

void Picture::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint position = event->position().toPoint();
    emit MouseUp(position, event->globalPosition().toPoint());
    if (rect().contains(position))
        emit Click();
}

void Picture::mouseDoubleClickEvent(QMouseEvent* event) {
    emit MouseDown(event->position().toPoint(), event->globalPosition().toPoint());
    emit DoubleClick();
}

} // namespace discaro::kit
