#pragma once

#include <functional>

namespace discaro::kit {

// Runs an action from the event loop as soon as no event handler and no yield is on the stack: when
// nobody can still be using what the action destroys, and nobody is in the middle of something.
void atGround(std::function<void()> action);

// To be called whenever an outermost handler or yield has returned.
void groundReached();

// Runs the waiting actions at once, for the end of the application and of a test.
void runGroundActions();

} // namespace discaro::kit
