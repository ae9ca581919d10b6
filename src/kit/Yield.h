#pragma once

namespace discaro::kit {

// Lets pending window events run and returns; about a microsecond when there are none. Any handler
// may run meanwhile, also one that unloads the caller's own window: the window's members stay
// usable until the caller has returned.
void yield();

// How many yields are on the stack.
int yieldDepth();

} // namespace discaro::kit
