#include "kit/display/NumLed.h"

#include "kit/common/Keys.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

#include <array>
#include <cmath>
#include <cstdint>
#include <utility>

namespace discaro::kit {

namespace {

const QColor kGround(16, 20, 26);
const QColor kEdge(58, 66, 78);
const QColor kLit(96, 232, 136);
const QColor kDark(30, 46, 42);

// Segments: top, upper right, lower right, bottom, lower left, upper left, middle; then the upright
// of the plus.
constexpr std::array<uint8_t, 10> kDigits{0x3f, 0x06, 0x5b, 0x4f, 0x66, 0x6d, 0x7d, 0x07, 0x7f, 0x6f};
constexpr uint8_t kMiddle = 0x40;
constexpr double kDigitAspect = 0.56;
constexpr double kColonAspect = 0.24;
constexpr double kGap = 0.16;

uint8_t segmentsOf(QChar each) {
    if (each >= u'0' && each <= u'9')
        return kDigits[static_cast<size_t>(each.unicode() - u'0')];
    return each == u'-' || each == u'+' ? kMiddle : 0;
}

double widthOf(QChar each, double height) {
    return height * (each == u':' ? kColonAspect : kDigitAspect);
}

double widthOf(const QString& caption, double height) {
    double width = 0;
    for (const QChar each : caption)
        width += widthOf(each, height) + height * kGap;
    return width > 0 ? width - height * kGap : 0;
}

// A bar with pointed ends between two points of the digit's grid.
void drawBar(QPainter& painter, QPointF from, QPointF to, double thickness) {
    const QPointF along = to - from;
    const double length = std::hypot(along.x(), along.y());
    if (length < 1.0)
        return;
    const QPointF unit = along / length;
    const QPointF side(-unit.y() * thickness / 2, unit.x() * thickness / 2);
    const QPointF tip = unit * thickness / 2;
    const QPointF inset = unit * thickness * 0.12;
    const QPointF a = from + inset;
    const QPointF b = to - inset;
    painter.drawPolygon(QPolygonF{a, a + tip + side, b - tip + side, b, b - tip - side, a + tip - side});
}

std::array<std::pair<QPointF, QPointF>, 7> barsOf(const QRectF& grid) {
    const QPointF left(grid.left(), grid.center().y());
    const QPointF right(grid.right(), grid.center().y());
    return {{{grid.topLeft(), grid.topRight()},
             {grid.topRight(), right},
             {right, grid.bottomRight()},
             {grid.bottomLeft(), grid.bottomRight()},
             {left, grid.bottomLeft()},
             {grid.topLeft(), left},
             {left, right}}};
}

void drawDigit(QPainter& painter, QChar each, const QRectF& cell) {
    const double thickness = cell.height() * 0.12;
    const double half = thickness / 2;
    const QRectF grid = cell.adjusted(half, half, -half, -half);
    const auto bars = barsOf(grid);
    const uint8_t lit = segmentsOf(each);
    for (size_t place = 0; place < bars.size(); ++place) {
        painter.setBrush(lit & (1U << place) ? kLit : kDark);
        drawBar(painter, bars[place].first, bars[place].second, thickness);
    }
    if (each != u'+')
        return;
    painter.setBrush(kLit);
    const double arm = grid.width() / 2;
    drawBar(painter, grid.center() - QPointF(0, arm), grid.center() + QPointF(0, arm), thickness);
}

void drawColon(QPainter& painter, const QRectF& cell) {
    painter.setBrush(kLit);
    const double radius = cell.height() * 0.075;
    for (const double height : {0.3, 0.7})
        painter.drawEllipse(QPointF(cell.center().x(), cell.top() + cell.height() * height), radius, radius);
}

} // namespace

NumLed::NumLed(QWidget* parent)
    : QWidget(parent)
    , m_pace([this] { update(); }) {
    setFocusPolicy(Qt::TabFocus);
}

void NumLed::setCaption(const QString& caption) {
    if (caption == m_caption)
        return;
    m_caption = caption;
    m_pace.changed();
}

void NumLed::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(kEdge);
    painter.setBrush(kGround);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    painter.setPen(Qt::NoPen);
    const QRectF room = QRectF(rect()).adjusted(8, 6, -8, -6);
    if (room.width() < 1.0 || room.height() < 1.0)
        return;
    const double full = widthOf(m_caption, room.height());
    const double height = full > room.width() ? room.height() * room.width() / full : room.height();
    double left = room.right() - widthOf(m_caption, height);
    for (const QChar each : m_caption) {
        const QRectF cell(left, room.center().y() - height / 2, widthOf(each, height), height);
        each == u':' ? drawColon(painter, cell) : drawDigit(painter, each, cell);
        left += cell.width() + height * kGap;
    }
    if (hasFocus()) {
        painter.setPen(QPen(kLit, 1.5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 3, 3);
    }
}

void NumLed::mouseReleaseEvent(QMouseEvent* event) {
    if (rect().contains(event->position().toPoint()))
        emit Click();
}

void NumLed::keyPressEvent(QKeyEvent* event) {
    if (isPress(*event))
        emit Click();
    else
        QWidget::keyPressEvent(event);
}

} // namespace discaro::kit
