#include "kit/display/Shape.h"

#include <QtCore/QRect>
#include <QtCore/QVector>

#include <algorithm>
#include <cmath>

namespace discaro::kit {

namespace {

// How far a row of pixels is cut in at each side: the ellipse's edge at the middle of the row.
int cutOf(double row, double radiusX, double radiusY) {
    if (row >= radiusY)
        return 0;
    const double up = (radiusY - row) / radiusY;
    return static_cast<int>(std::lround(radiusX * (1.0 - std::sqrt(1.0 - up * up))));
}

} // namespace

QRegion roundRectRegion(int left, int top, int right, int bottom, int ellipseWidth, int ellipseHeight) {
    const int width = right - left;
    const int height = bottom - top;
    if (width <= 0 || height <= 0)
        return {};
    const double radiusX = std::clamp(ellipseWidth, 0, width) / 2.0;
    const double radiusY = std::clamp(ellipseHeight, 0, height) / 2.0;
    QVector<QRect> rows;
    for (int row = 0; row < height; ++row) {
        const int cut = cutOf(std::min(row, height - 1 - row) + 0.5, radiusX, radiusY);
        if (width > 2 * cut)
            rows.append(QRect(left + cut, top + row, width - 2 * cut, 1));
    }
    QRegion region;
    region.setRects(rows.constData(), static_cast<int>(rows.size()));
    return region;
}

} // namespace discaro::kit
