#include "kit/Picture.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>

namespace discaro::kit {

Picture::Picture(QWidget* parent)
    : QWidget(parent) {}

void Picture::setSource(const QString& resource) {
    m_drawing = std::make_unique<QSvgRenderer>(resource);
    if (!m_drawing->isValid())
        m_drawing.reset();
    m_drawing ? m_drawing->setAspectRatioMode(Qt::KeepAspectRatio) : void();
    m_image = {};
    m_drawn = {};
    update();
}

void Picture::setImage(const QPixmap& image) {
    m_drawing.reset();
    m_image = image;
    m_drawn = {};
    update();
}

bool Picture::isEmpty() const {
    return !m_drawing && m_image.isNull();
}

const QPixmap& Picture::drawn() {
    const QSize wanted = size() * devicePixelRatioF();
    if (m_drawn.size() == wanted)
        return m_drawn;
    m_drawn = QPixmap(wanted);
    m_drawn.fill(Qt::transparent);
    QPainter painter(&m_drawn);
    m_drawing->render(&painter);
    painter.end();
    m_drawn.setDevicePixelRatio(devicePixelRatioF());
    return m_drawn;
}

void Picture::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_drawing) {
        painter.drawPixmap(0, 0, drawn());
    } else if (!m_image.isNull()) {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        const QSize fitted = m_image.size().scaled(size(), Qt::KeepAspectRatio);
        painter.drawPixmap(
            QRect(QPoint((width() - fitted.width()) / 2, (height() - fitted.height()) / 2), fitted),
            m_image);
    }
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
