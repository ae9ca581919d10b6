#include "kit/program/Yield.h"

#include "kit/program/Ground.h"

#include <QtCore/QCoreApplication>

#include <utility>

namespace discaro::kit {

namespace {

using Clock = std::chrono::steady_clock;

Clock::duration g_pace = std::chrono::milliseconds(1);
Clock::time_point g_asked;

} // namespace

void yield() {
    const Handling handling;
    QCoreApplication::processEvents();
}

void yieldOften() {
    if (Clock::now() - g_asked < g_pace) {
        const Handling handling;
        QCoreApplication::sendPostedEvents();
        return;
    }
    yield();
    g_asked = Clock::now();
}

std::chrono::nanoseconds setYieldPace(std::chrono::nanoseconds pace) {
    return std::exchange(g_pace, pace);
}

} // namespace discaro::kit
