#include "kit/common/Colour.h"
#include "kit/common/SpokenText.h"
#include "kit/display/ColourBlend.h"
#include "kit/display/Shape.h"

#include <gtest/gtest.h>

using namespace discaro;
using kit::Channels;

namespace {

// A letter for every pixel of a small region: '#' inside, '.' outside.
std::string drawn(const QRegion& region, int side) {
    std::string text;
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x)
            text += region.contains(QPoint(x, y)) ? '#' : '.';
        text += '\n';
    }
    return text;
}

} // namespace

TEST(Colour, IsLaidOutBlueGreenRed) {
    EXPECT_EQ(kit::colourOf(16744576), QColor(128, 128, 255));
    EXPECT_EQ(kit::colourOf(192), QColor(192, 0, 0));
    EXPECT_EQ(kit::numberOf(QColor(128, 128, 255)), 16744576);
    EXPECT_EQ(kit::numberOf(Qt::white), 16777215);
}

TEST(Colour, ContrastIsTheRatioOfLuminances) {
    EXPECT_NEAR(kit::contrast(Qt::black, Qt::white), 21.0, 0.01);
    EXPECT_NEAR(kit::contrast(Qt::white, Qt::black), 21.0, 0.01);
    EXPECT_NEAR(kit::contrast(Qt::red, Qt::red), 1.0, 0.001);
    EXPECT_NEAR(kit::contrast(QColor(119, 119, 119), Qt::white), 4.48, 0.01);
}

TEST(ColourBlend, EndsWithTheEndColourAndBeginsOneStepFromTheStart) {
    const auto bands = kit::blendBands({0, 256 - 1, 10}, {256 - 1, 0, 10});
    EXPECT_EQ(bands.size(), 256U);
    EXPECT_EQ(bands.back(), (Channels{255, 0, 10}));
    EXPECT_EQ(bands.front(), (Channels{1, 254, 10}));
    EXPECT_EQ(bands[127], (Channels{128, 128, 10}));
}

TEST(ColourBlend, OfOneColourIsThatColour) {
    for (const auto& band : kit::blendBands({7, 8, 9}, {7, 8, 9}))
        EXPECT_EQ(band, (Channels{7, 8, 9}));
}

TEST(ColourBlend, MovesEachChannelTheSameWayAllAlong) {
    const auto bands = kit::blendBands({200, 3, 0}, {20, 250, 1});
    for (size_t band = 1; band < bands.size(); ++band) {
        EXPECT_LE(bands[band].red, bands[band - 1].red);
        EXPECT_GE(bands[band].green, bands[band - 1].green);
        EXPECT_GE(bands[band].blue, bands[band - 1].blue);
    }
}

TEST(ColourBlend, RandomChannelsAreChannels) {
    bool differ = false;
    const Channels first = kit::randomChannels();
    for (int draw = 0; draw < 200; ++draw) {
        const Channels each = kit::randomChannels();
        for (const int channel : {each.red, each.green, each.blue}) {
            EXPECT_GE(channel, 0);
            EXPECT_LE(channel, 255);
        }
        differ = differ || !(each == first);
    }
    EXPECT_TRUE(differ);
}

TEST(ColourBlend, PaintsEveryLineOfAWindowWhateverItsHeight) {
    for (const int height : {1, 100, 256, 700}) {
        QImage image(4, height, QImage::Format_RGB32);
        image.fill(Qt::magenta);
        QPainter painter(&image);
        kit::paintBlend(painter, image.rect(), kit::blendBands({0, 0, 0}, {0, 200, 0}));
        painter.end();
        for (int y = 0; y < height; ++y)
            EXPECT_EQ(image.pixelColor(2, y).red(), 0) << height << " " << y;
        EXPECT_EQ(image.pixelColor(0, height - 1), QColor(0, 200, 0));
    }
}

TEST(Shape, AnEllipseOfTheRectanglesSizeIsACircle) {
    EXPECT_EQ(drawn(kit::roundRectRegion(1, 1, 9, 9, 8, 8), 10), "..........\n"
                                                                 "...####...\n"
                                                                 "..######..\n"
                                                                 ".########.\n"
                                                                 ".########.\n"
                                                                 ".########.\n"
                                                                 ".########.\n"
                                                                 "..######..\n"
                                                                 "...####...\n"
                                                                 "..........\n");
}

TEST(Shape, TheMenusCircleTouchesItsRectangleAndLeavesTheCorners) {
    const QRegion circle = kit::roundRectRegion(2, 2, 479, 479, 479, 479);
    EXPECT_EQ(circle.boundingRect(), QRect(2, 2, 477, 477));
    EXPECT_TRUE(circle.contains(QPoint(240, 240)));
    EXPECT_FALSE(circle.contains(QPoint(10, 10)));
    EXPECT_FALSE(circle.contains(QPoint(470, 470)));
    EXPECT_TRUE(circle.contains(QPoint(240, 2)));
    EXPECT_TRUE(circle.contains(QPoint(2, 240)));
    EXPECT_FALSE(circle.contains(QPoint(479, 240)));
}

TEST(Shape, SmallCornersCutOnlyTheCorners) {
    const QRegion region = kit::roundRectRegion(0, 0, 10, 10, 4, 4);
    EXPECT_FALSE(region.contains(QPoint(0, 0)));
    EXPECT_TRUE(region.contains(QPoint(3, 0)));
    EXPECT_TRUE(region.contains(QPoint(0, 5)));
}

TEST(Shape, WithoutCornersIsTheRectangleAndWithoutRoomNothing) {
    EXPECT_TRUE(kit::roundRectRegion(0, 0, 5, 3, 0, 0).xored(QRegion(0, 0, 5, 3)).isEmpty());
    EXPECT_TRUE(kit::roundRectRegion(5, 5, 5, 9, 4, 4).isEmpty());
    EXPECT_TRUE(kit::roundRectRegion(9, 5, 5, 9, 4, 4).isEmpty());
}

TEST(SpokenText, DropsTheMarkOfTheAccessLetterAndTheColon) {
    EXPECT_EQ(kit::spokenForm("&Name :"), "Name");
    EXPECT_EQ(kit::spokenForm("R&&B"), "R&B");
    EXPECT_EQ(kit::spokenForm("Program  Name:"), "Program Name");
    EXPECT_EQ(kit::spokenForm("A &"), "A &");
}

TEST(SpokenText, KnowsWhetherATextSaysAnything) {
    EXPECT_TRUE(kit::hasWords("&OK"));
    EXPECT_FALSE(kit::hasWords("_"));
    EXPECT_FALSE(kit::hasWords(""));
}
