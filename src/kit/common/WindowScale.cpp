#include "kit/common/WindowScale.h"

#include <QtGui/QFontMetricsF>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cmath>

namespace discaro::kit {

namespace {

// What the places of the form tables were drawn for: a wide sans serif font of 12 pixels.
constexpr double kReferenceHeight = 14.0;
constexpr double kReferenceWidth = 205.0;
const char* const kMeasured = "The quick brown fox, 0123456789";

} // namespace

double fontScale(const QFont& font) {
    const QFontMetricsF metrics(font);
    const double height = metrics.height() / kReferenceHeight;
    const double width = metrics.horizontalAdvance(QString::fromLatin1(kMeasured)) / kReferenceWidth;
    // Whole twentieths: fonts of nearly the reference's size keep the places exact.
    return std::max(1.0, std::round(std::max(height, width) * 20.0) / 20.0);
}

double windowScale() {
    return fontScale(QApplication::font());
}

int scaledLength(double logical) {
    return static_cast<int>(std::lround(logical * windowScale()));
}

} // namespace discaro::kit
