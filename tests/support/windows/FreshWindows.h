#pragma once

#include "support/ScratchFolder.h"

namespace discaro::test {

// A program as it is at its start as far as windows go: none is up or known, nothing waits for the event loop, boxes
// come to the screen, a yield always looks at the timers, and the user has no settings yet. At the object's end it is
// so again. Members that windows use stand before it, scripts of answers and the like behind it.
class FreshWindows {
public:
    FreshWindows();
    ~FreshWindows();
    FreshWindows(const FreshWindows&) = delete;
    FreshWindows& operator=(const FreshWindows&) = delete;

private:
    static void reset();

    const ScratchFolder m_settings;
};

} // namespace discaro::test
