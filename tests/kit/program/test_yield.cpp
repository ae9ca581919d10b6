#include "kit/program/Yield.h"
#include "support/windows/FreshWindows.h"

#include <QtCore/QTimer>

#include <gtest/gtest.h>

namespace discaro::kit {

namespace {

class Yields : public testing::Test {
protected:
    Yields() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] { ++ticks; });
        m_timer.start(0);
    }

    int ticks = 0;

private:
    const test::FreshWindows m_windows;
    QTimer m_timer;
};

} // namespace

TEST_F(Yields, AYieldLetsTimersRun) {
    yield();
    EXPECT_EQ(ticks, 1);
    yieldOften();
    EXPECT_EQ(ticks, 2) << "nothing holds it back without a pace";
}

TEST_F(Yields, BetweenTwoLooksAtTheTimersOnlyWhatIsPostedRuns) {
    yieldOften();
    setYieldPace(std::chrono::hours(1));
    int posted = 0;
    QObject receiver;
    for (int times = 1; times <= 3; ++times) {
        QMetaObject::invokeMethod(
            &receiver, [&] { ++posted; }, Qt::QueuedConnection);
        yieldOften();
        EXPECT_EQ(posted, times);
    }
    EXPECT_EQ(ticks, 1);
    yield();
    EXPECT_EQ(ticks, 2) << "a plain yield always looks";
}

} // namespace discaro::kit
