#pragma once

#include <optional>
#include <string>

namespace discaro::scanner {

// The scan's clock. It counts by the second of the minute, so it needs no start time and holds no date; a stretch of
// more than a minute between two ticks loses whole minutes.
class ScanClock {
public:
    // From nothing; the next tick counts as the first.
    void start();

    // One tick at this second of the minute, 0 to 59.
    void tick(int second);
    // The minute's turn: at most one minute a tick is carried over.
    void carryMinute();

    // Every second tick gives the remaining time as "-mm:ss": the average time of the files so far times the files
    // to come, whose numbers stand at the head of the counters' captions. With no file done yet it is "-00:00".
    std::optional<std::string> estimate(const std::string& doneCaption, const std::string& leftCaption);

    // "+mm:ss"
    std::string elapsed() const;

private:
    int ElapsedSeconds = 0;
    int ElapsedMinutes = 0;
    int LastSecond = 0;
    int TicksSinceEstimate = 0;
    bool FirstTick = false;
};

} // namespace discaro::scanner
