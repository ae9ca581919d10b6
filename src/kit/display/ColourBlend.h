#pragma once

#include <QtGui/QPainter>

#include <array>

namespace discaro::kit {

// The three channels of a colour, each 0 to 255.
struct Channels {
    int red = 0;
    int green = 0;
    int blue = 0;
    bool operator==(const Channels&) const = default;
};

inline constexpr int kBlendBands = 256;
using BlendBands = std::array<Channels, kBlendBands>;

// Three channels drawn at random, from a generator seeded by the clock.
Channels randomChannels();

// The colours of the 256 bands of a vertical blend, top first. Each channel moves from start
// towards end by a 256th of their difference before every band, so the last band has exactly the
// end colour.
BlendBands blendBands(const Channels& start, const Channels& end);

// Paints the bands over a rectangle, each over a 256th of its height, without gaps.
void paintBlend(QPainter& painter, const QRect& place, const BlendBands& bands);

} // namespace discaro::kit
