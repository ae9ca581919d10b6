#include "kit/display/Marquee.h"

#include <QtGui/QFontMetricsF>
#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace discaro::kit {

namespace {

constexpr int kFrameMilliseconds = 33;
// Room between the end of the text and its next beginning, as a share of the height.
constexpr double kGap = 3.0;
// How much of the width fades at each edge.
constexpr double kFade = 0.15;

} // namespace

Marquee::Marquee(QWidget* parent)
    : QWidget(parent) {
    m_frames.setInterval(kFrameMilliseconds);
    m_frames.setTimerType(Qt::PreciseTimer);
    connect(&m_frames, &QTimer::timeout, this, &Marquee::advance);
}

void Marquee::setText(const QString& text) {
    m_text = text;
    m_offset = 0.0;
    startOrStop();
    update();
}

void Marquee::setScrolling(bool scrolling) {
    m_scrolling = scrolling;
    startOrStop();
}

void Marquee::startOrStop() {
    const bool moves = m_scrolling && isVisible() && !m_text.isEmpty();
    if (moves == m_frames.isActive())
        return;
    m_lastFrame.start();
    moves ? m_frames.start() : m_frames.stop();
}

// Moves by the time that has really passed, so that a busy moment costs no smoothness afterwards.
void Marquee::advance() {
    const double seconds = static_cast<double>(m_lastFrame.restart()) / 1000.0;
    const double length = period();
    m_offset = length > 0 ? std::fmod(m_offset + seconds * kPixelsPerSecond, length) : 0.0;
    update();
}

double Marquee::period() const {
    const double text = QFontMetricsF(font()).horizontalAdvance(m_text);
    return std::max(text + height() * kGap, static_cast<double>(width()));
}

// The text fades in and out at the edges.
QBrush Marquee::ink() const {
    QColor clear = palette().color(QPalette::WindowText);
    const QColor full = clear;
    clear.setAlpha(0);
    QLinearGradient fading(0, 0, width(), 0);
    fading.setColorAt(0.0, clear);
    fading.setColorAt(kFade, full);
    fading.setColorAt(1.0 - kFade, full);
    fading.setColorAt(1.0, clear);
    return fading;
}

void Marquee::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setPen(QPen(m_scrolling ? ink() : palette().windowText(), 1));
    const double length = period();
    const double start = m_scrolling ? -m_offset : 0.0;
    for (double left = start; left < width() && length > 0; left += length) {
        painter.drawText(QRectF(left, 0, length, height()), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         m_text);
        if (!m_scrolling)
            break;
    }
}

void Marquee::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    startOrStop();
}

void Marquee::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    startOrStop();
}

} // namespace discaro::kit
