#include "scanner/ScanClock.h"

#include "base/Number.h"

#include <cmath>
#include <cstdint>

namespace discaro::scanner {

namespace {

constexpr int kTicksToEstimate = 2;

std::string twoDigits(int64_t number) {
    return (number < 10 ? "0" : "") + std::to_string(number);
}

std::string clockText(char sign, int64_t minutes, int64_t seconds) {
    return sign + twoDigits(minutes) + ":" + twoDigits(seconds);
}

} // namespace

void ScanClock::start() {
    ElapsedMinutes = 0;
    ElapsedSeconds = 0;
    FirstTick = true;
}

void ScanClock::tick(int second) {
    const int passed = second < LastSecond ? second - LastSecond + 60 : second - LastSecond;
    LastSecond = second;
    ElapsedSeconds += passed;
    if (FirstTick)
        ElapsedSeconds = 0;
    FirstTick = false;
    ++TicksSinceEstimate;
}

void ScanClock::carryMinute() {
    if (ElapsedSeconds < 60)
        return;
    ++ElapsedMinutes;
    ElapsedSeconds -= 60;
}

std::optional<std::string> ScanClock::estimate(const std::string& doneCaption, const std::string& leftCaption) {
    if (TicksSinceEstimate < kTicksToEstimate)
        return std::nullopt;
    const double done = base::leadingNumber(doneCaption);
    const double left = std::abs(base::leadingNumber(leftCaption));
    const double elapsedSeconds = ElapsedMinutes * 60 + ElapsedSeconds;
    const double perFile = done == 0 ? 0 : elapsedSeconds / done;
    const auto remaining = static_cast<int64_t>(std::floor(perFile * left));
    TicksSinceEstimate = 0;
    return clockText('-', remaining / 60, remaining % 60);
}

std::string ScanClock::elapsed() const {
    return clockText('+', ElapsedMinutes, ElapsedSeconds);
}

} // namespace discaro::scanner
