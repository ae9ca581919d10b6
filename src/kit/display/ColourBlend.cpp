#include "kit/display/ColourBlend.h"

#include <chrono>
#include <cmath>
#include <random>

namespace discaro::kit {

namespace {

int runningChannel(int start, int end, int band) {
    const double step = (end - start) / 256.0;
    return static_cast<int>(std::lround(start + step * (band + 1)));
}

} // namespace

Channels randomChannels() {
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    std::minstd_rand generator(static_cast<std::minstd_rand::result_type>(now));
    generator.discard(3); // seeds that lie close together begin alike
    std::uniform_real_distribution<double> share(0.0, 1.0);
    const auto draw = [&] { return static_cast<int>(share(generator) * 256.0); };
    const int red = draw();
    const int green = draw();
    return {red, green, draw()};
}

BlendBands blendBands(const Channels& start, const Channels& end) {
    BlendBands bands;
    for (int band = 0; band < kBlendBands; ++band)
        bands[static_cast<size_t>(band)] = {runningChannel(start.red, end.red, band),
                                            runningChannel(start.green, end.green, band),
                                            runningChannel(start.blue, end.blue, band)};
    return bands;
}

void paintBlend(QPainter& painter, const QRect& place, const BlendBands& bands) {
    const auto edge = [&place](int band) { return place.top() + place.height() * band / kBlendBands; };
    for (int band = 0; band < kBlendBands; ++band) {
        const auto& [red, green, blue] = bands[static_cast<size_t>(band)];
        painter.fillRect(QRect(place.left(), edge(band), place.width(), edge(band + 1) - edge(band)),
                         QColor(red, green, blue));
    }
}

} // namespace discaro::kit
