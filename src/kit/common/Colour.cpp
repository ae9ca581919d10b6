#include "kit/common/Colour.h"

#include <algorithm>
#include <cmath>

namespace discaro::kit {

namespace {

double linear(double channel) {
    return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& colour) {
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

} // namespace

QColor colourOf(int32_t number) {
    return {number & 255, (number >> 8) & 255, (number >> 16) & 255};
}

int32_t numberOf(const QColor& colour) {
    return colour.red() + colour.green() * 256 + colour.blue() * 65536;
}

double contrast(const QColor& text, const QColor& ground) {
    const auto [darker, lighter] = std::minmax({luminance(text), luminance(ground)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace discaro::kit
