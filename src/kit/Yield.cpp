#include "kit/Yield.h"

#include "kit/Ground.h"

#include <QtCore/QCoreApplication>

#include <utility>

namespace discaro::kit {

namespace {

using Clock = std::chrono::steady_clock;

int g_depth = 0;
Clock::duration g_pace = std::chrono::milliseconds(1);
Clock::time_point g_asked;

struct Deeper {
    Deeper() { ++g_depth; }
    ~Deeper() { --g_depth; }
};

template <typename Run>
void yieldBy(Run run) {
    {
        const Deeper deeper;
        run();
    }
    if (g_depth == 0)
        groundReached();
}

} // namespace

void yield() {
    yieldBy([] { QCoreApplication::processEvents(); });
}

void yieldOften() {
    if (Clock::now() - g_asked < g_pace)
        return yieldBy([] { QCoreApplication::sendPostedEvents(); });
    yield();
    g_asked = Clock::now();
}

std::chrono::nanoseconds setYieldPace(std::chrono::nanoseconds pace) {
    return std::exchange(g_pace, pace);
}

int yieldDepth() {
    return g_depth;
}

} // namespace discaro::kit
