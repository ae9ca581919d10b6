#pragma once

#include <functional>

namespace discaro::kit {

// The platform's warning sound.
void Beep();

// Puts another sound in place (none: the platform's) and returns the one before.
std::function<void()> setBeeper(std::function<void()> beeper);

} // namespace discaro::kit
