#pragma once

#include <functional>

namespace discaro::app {

class SingleInstance;

// The entry procedure: refuses to run beside another instance, else shows the main menu. `prepare` makes the
// application folder ready; it runs only when no other instance may be at work there.
void Main(const SingleInstance& instance, const std::function<void()>& prepare);

} // namespace discaro::app
