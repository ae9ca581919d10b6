#include "base/RuntimeError.h"
#include "kit/SampleTest.h"
#include "kit/common/Pace.h"
#include "kit/display/Marquee.h"
#include "kit/display/NumLed.h"
#include "kit/display/Picture.h"
#include "kit/display/ProgressBar.h"
#include "kit/program/Yield.h"

#include <QtGui/QAccessible>

#include <set>

using namespace discaro;
using namespace discaro::test;

namespace {

// Whether any pixel of the widget is near to a colour.
bool shows(QWidget& widget, const QColor& colour) {
    const QImage image = widget.grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor pixel = image.pixelColor(x, y);
            if (std::abs(pixel.red() - colour.red()) + std::abs(pixel.green() - colour.green()) +
                    std::abs(pixel.blue() - colour.blue()) <
                60)
                return true;
        }
    return false;
}

int countOfLit(QWidget& widget) {
    const QImage image = widget.grab().toImage();
    int lit = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            lit += image.pixelColor(x, y).green() > 180;
    return lit;
}

bool refuses(const std::function<void()>& step) {
    try {
        step();
    } catch (const base::RuntimeError& error) {
        return error.is(base::ErrorNumber::InvalidValue);
    }
    return false;
}

} // namespace

TEST(ProgressBar, TakesValuesOfItsRange) {
    kit::ProgressBar bar;
    bar.setMax(5);
    for (int value = 0; value <= 5; ++value) {
        bar.setValue(value);
        EXPECT_EQ(bar.value(), value);
    }
}

TEST(ProgressBar, RefusesAValueAboveItsMaxAndKeepsTheOldOne) {
    kit::ProgressBar bar;
    bar.setMax(5);
    bar.setValue(5);
    EXPECT_TRUE(refuses([&] { bar.setValue(6); }));
    EXPECT_EQ(bar.value(), 5);
    EXPECT_TRUE(refuses([&] { bar.setValue(-1); }));
}

TEST(ProgressBar, RefusesAMaxBelowItsMin) {
    kit::ProgressBar bar;
    bar.setMin(1);
    EXPECT_TRUE(refuses([&] { bar.setMax(0); }));
    EXPECT_TRUE(refuses([&] { bar.setMin(101); }));
    EXPECT_EQ(bar.max(), 100);
    EXPECT_EQ(bar.min(), 1);
}

TEST(ProgressBar, ANewRangeTakesTheValueWithIt) {
    kit::ProgressBar bar;
    bar.setValue(80);
    bar.setMax(50);
    EXPECT_EQ(bar.value(), 50);
    bar.setMin(20);
    bar.setMax(20);
    EXPECT_EQ(bar.value(), 20);
}

TEST(ProgressBar, KnowsItsWholePercentageRoundedDown) {
    kit::ProgressBar bar;
    bar.setMax(3);
    bar.setValue(2);
    EXPECT_EQ(bar.percent(), 66);
    bar.setValue(3);
    EXPECT_EQ(bar.percent(), 100);
    bar.setMax(0);
    EXPECT_TRUE(refuses([&] { bar.percent(); }));
}

TEST(ProgressBar, HoldsCountsBeyondThirtyTwoBits) {
    kit::ProgressBar bar;
    bar.setMax(10'000'000'000);
    bar.setValue(5'000'000'000);
    EXPECT_EQ(bar.value(), 5'000'000'000);
    EXPECT_EQ(bar.percent(), 50);
}

TEST(ProgressBar, ComesToShowTheLastValue) {
    kit::ProgressBar bar;
    bar.setMax(1000);
    for (int value = 0; value <= 1000; ++value)
        bar.setValue(value);
    EXPECT_TRUE(waitFor([&] { return bar.QProgressBar::value() == bar.maximum(); }));
}

TEST(ProgressBar, PaintsWhatItHasWithoutTheEventLoop) {
    kit::ProgressBar bar;
    bar.resize(100, 20);
    bar.setMax(10);
    for (int value = 1; value <= 10; ++value) {
        bar.setValue(value);
        bar.paintNow();
        EXPECT_EQ(bar.QProgressBar::value(), value * 1000);
    }
}

TEST(ProgressBar, ARangeThatDoesNotBeginAtZeroIsPaintedFromItsMin) {
    kit::ProgressBar bar;
    bar.setMax(20);
    bar.setMin(10);
    for (const auto& [value, painted] : {std::pair(10, 0), std::pair(15, 5000), std::pair(20, 10000)}) {
        bar.setValue(value);
        bar.paintNow();
        EXPECT_EQ(bar.QProgressBar::value(), painted) << value;
    }
}

TEST(ProgressBar, ARangeOfNothingIsPaintedEmpty) {
    kit::ProgressBar bar;
    bar.setMax(10);
    bar.setValue(10);
    bar.paintNow();
    bar.setMax(0);
    bar.paintNow();
    EXPECT_EQ(bar.QProgressBar::value(), 0);
}

TEST(Pace, ShowsTheFirstChangeAtOnceAndManyMoreTogether) {
    int shown = 0;
    kit::Pace pace([&] { ++shown; });
    pace.changed();
    EXPECT_EQ(shown, 1);
    for (int more = 0; more < 1000; ++more)
        pace.changed();
    EXPECT_LE(shown, 3);
    EXPECT_TRUE(waitFor([&] { return shown >= 2; }));
}

TEST(Pace, FlushShowsWhatWaitsAndCancelForgetsIt) {
    int shown = 0;
    kit::Pace pace([&] { ++shown; });
    pace.changed();
    pace.changed();
    pace.flush();
    EXPECT_EQ(shown, 2);
    pace.flush();
    EXPECT_EQ(shown, 2);
    pace.changed();
    pace.cancel();
    pace.flush();
    EXPECT_EQ(shown, 2);
}

TEST(NumLed, LightsSegmentsForItsCaption) {
    kit::NumLed led;
    led.resize(120, 40);
    const int dark = countOfLit(led);
    led.setCaption("1");
    const int one = countOfLit(led) - dark;
    led.setCaption("8");
    const int eight = countOfLit(led) - dark;
    EXPECT_GT(one, 0);
    EXPECT_GT(eight, 2 * one);
    led.setCaption("abc");
    EXPECT_EQ(countOfLit(led), dark);
}

TEST(NumLed, EachDigitHasItsSegments) {
    kit::NumLed led;
    led.resize(200, 112);
    const auto lit = [&led] {
        // Top, upper right, lower right, bottom, lower left, upper left, middle.
        constexpr QPoint kMiddles[] = {{164, 12}, {186, 34}, {186, 78}, {164, 100}, {142, 78}, {142, 34}, {164, 56}};
        const QImage image = led.grab().toImage();
        std::string segments;
        for (const QPoint& middle : kMiddles)
            segments += image.pixelColor(middle).green() > 180 ? '1' : '0';
        return segments;
    };
    const char* const segments[] = {"1111110", "0110000", "1101101", "1111001", "0110011",
                                    "1011011", "1011111", "1110000", "1111111", "1111011"};
    for (int digit = 0; digit < 10; ++digit) {
        led.setCaption(QString::number(digit));
        EXPECT_EQ(lit(), segments[digit]) << digit;
    }
    led.setCaption("-");
    EXPECT_EQ(lit(), "0000001");
}

TEST(NumLed, HasSmoothEdges) {
    kit::NumLed led;
    led.resize(160, 40);
    led.setCaption("1:8");
    const QImage image = led.grab().toImage();
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            colours.insert(image.pixel(x, y));
    EXPECT_GT(colours.size(), 20U) << "the few of its parts, and those in between";
}

TEST(NumLed, ShowsSignsAndColons) {
    kit::NumLed led;
    led.resize(160, 40);
    const int dark = countOfLit(led);
    for (const char* caption : {"+", "-", ":"}) {
        led.setCaption(caption);
        EXPECT_GT(countOfLit(led), dark) << caption;
    }
}

TEST(NumLed, FitsACaptionOfAnyLengthIntoItsPlace) {
    kit::NumLed led;
    led.resize(80, 40);
    led.setCaption("-123456789012345678901234567890");
    EXPECT_GT(countOfLit(led), 0);
    led.resize(3, 3);
    led.grab();
}

TEST(NumLed, ClicksByMouseAndKeys) {
    kit::NumLed led;
    led.resize(80, 40);
    int clicks = 0;
    QObject::connect(&led, &kit::NumLed::Click, [&] { ++clicks; });
    QTest::mouseClick(&led, Qt::LeftButton);
    QTest::keyClick(&led, Qt::Key_Space);
    QTest::keyClick(&led, Qt::Key_Return);
    QTest::keyClick(&led, Qt::Key_A);
    EXPECT_EQ(clicks, 3);
}

TEST(NumLed, SaysItsCaption) {
    kit::NumLed led;
    led.setCaption("12+");
    auto* voice = QAccessible::queryAccessibleInterface(&led);
    EXPECT_EQ(voice->text(QAccessible::Name), "12+");
    led.setAccessibleName("Files done");
    EXPECT_EQ(voice->text(QAccessible::Name), "Files done: 12+");
}

TEST(Marquee, MovesOnlyWhileItScrollsAndIsSeen) {
    kit::Marquee marquee;
    marquee.setText("Tavo         Discaro");
    marquee.setScrolling(true);
    EXPECT_FALSE(marquee.isMoving());
    marquee.resize(120, 20);
    marquee.show();
    EXPECT_TRUE(marquee.isMoving());
    marquee.setScrolling(false);
    EXPECT_FALSE(marquee.isMoving());
    marquee.setScrolling(true);
    marquee.hide();
    EXPECT_FALSE(marquee.isMoving());
}

TEST(Marquee, RunsAndKeepsItsText) {
    kit::Marquee marquee;
    marquee.setText("Tavo         Discaro");
    marquee.setScrolling(true);
    marquee.resize(120, 20);
    marquee.show();
    const QImage before = marquee.grab().toImage();
    EXPECT_TRUE(waitFor([&] { return marquee.grab().toImage() != before; }));
    EXPECT_EQ(marquee.text(), "Tavo         Discaro");
}

TEST(Marquee, StandsStillWithoutScrollingInThePalettesColour) {
    kit::Marquee marquee;
    QPalette colours;
    colours.setColor(QPalette::WindowText, QColor(255, 0, 255));
    marquee.setPalette(colours);
    marquee.resize(120, 20);
    marquee.setText("Tavo");
    EXPECT_TRUE(shows(marquee, QColor(255, 0, 255)));
    EXPECT_FALSE(marquee.isMoving());
}

TEST(Marquee, SaysItsText) {
    kit::Marquee marquee;
    marquee.setText("Tavo");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&marquee)->text(QAccessible::Name), "Tavo");
}

TEST(Marquee, WithoutTextPaintsNothingAndRests) {
    kit::Marquee marquee;
    marquee.setScrolling(true);
    marquee.resize(0, 0);
    marquee.show();
    EXPECT_FALSE(marquee.isMoving());
    marquee.grab();
}

TEST(Picture, DrawsAResourceAtItsSize) {
    kit::Picture picture;
    picture.resize(64, 64);
    EXPECT_FALSE(shows(picture, QColor(192, 0, 0)));
    picture.setSource(":/pictures/discaro.svg");
    EXPECT_EQ(picture.grab().size(), QSize(64, 64));
    EXPECT_TRUE(shows(picture, QColor(192, 0, 0)));
}

TEST(Picture, KeepsItsShapeInAPlaceOfAnother) {
    kit::Picture picture;
    picture.resize(100, 20);
    picture.setSource(":/pictures/discaro.svg");
    const QImage shown = picture.grab().toImage();
    EXPECT_EQ(shown.pixelColor(2, 10), shown.pixelColor(0, 0));
    EXPECT_NE(shown.pixelColor(50, 10), shown.pixelColor(0, 0));
}

TEST(Picture, TellsOfTheMouseWithoutLookingAtTheButton) {
    kit::Picture picture;
    picture.resize(40, 40);
    std::vector<std::string> heard;
    QObject::connect(&picture, &kit::Picture::MouseDown, [&] { heard.emplace_back("down"); });
    QObject::connect(&picture, &kit::Picture::MouseUp, [&] { heard.emplace_back("up"); });
    QObject::connect(&picture, &kit::Picture::Click, [&] { heard.emplace_back("click"); });
    QTest::mouseClick(&picture, Qt::RightButton);
    EXPECT_THAT(heard, ::testing::ElementsAre("down", "up", "click"));
}
