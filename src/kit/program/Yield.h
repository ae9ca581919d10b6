#pragma once

#include <chrono>

namespace discaro::kit {

// Lets pending window events run and returns; about a microsecond when there are none. Any handler
// may run meanwhile, also one that unloads the caller's own window: the window's members stay
// usable until the caller has returned.
void yield();

// The same for work that yields some hundred thousand times. What the program itself has posted,
// painting included, runs at once; the window system and the timers, which cost a system call, are
// asked when they last were a millisecond ago.
void yieldOften();

// How long yieldOften may leave them unasked, and what that was before. Tests set it, so that
// nothing in them hangs on the time.
std::chrono::nanoseconds setYieldPace(std::chrono::nanoseconds pace);

} // namespace discaro::kit
