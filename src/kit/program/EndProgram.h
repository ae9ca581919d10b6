#pragma once

#include <functional>

namespace discaro::kit {

// Ends the process at once: no window is unloaded, nothing is closed, an open transaction is not
// committed.
[[noreturn]] void EndProgram(int exitCode = 0);

// Something to do in the place of the end; it must not return, so a test throws. None: the process
// ends. Returns the one before.
std::function<void(int)> setEnder(std::function<void(int)> ender);

} // namespace discaro::kit
