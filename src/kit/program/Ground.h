#pragma once

#include <functional>

namespace discaro::kit {

// An event handler or a yield, for as long as it is on the stack.
class Handling {
public:
    Handling();
    ~Handling();
    Handling(const Handling&) = delete;
    Handling& operator=(const Handling&) = delete;
};

// Runs an action from the event loop as soon as no event handler and no yield is on the stack: when
// nobody can still be using what the action destroys, and nobody is in the middle of something.
void atGround(std::function<void()> action);

// Runs the waiting actions at once, for the end of the application and of a test.
void runGroundActions();

} // namespace discaro::kit
