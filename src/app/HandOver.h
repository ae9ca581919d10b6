#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace discaro::app {

// The move from a main window to a task window.
struct Move {
    std::string_view from;     // the window that is left
    std::string_view to;       // the window that is opened
    std::string_view returnTo; // what the task window is to come back to: "switch" or "explore"
    bool keepFrom = false;     // only hide the window that is left; it keeps its state
};

// Shows Loading, leaves the old window, lets Loading paint, sets ReturnTo and then the further
// variables of the shared module, and shows the new window, which unloads Loading when it has
// loaded. Does nothing when the window to open is not known.
void handOver(const Move& move, const std::function<void()>& setVariables = {});

// Shows what ReturnTo names: Switch for "switch", EXMain for "explore", nothing for any other word.
void showReturnWindow();

// Shows Loading and lets it paint.
void showLoading();

// The way back into the explorer with a jump: shows Loading, lets it paint, shows EXMain and starts
// its Timer2, which selects what the Jump variables name, also when the explorer was only hidden.
void jumpToExplorer();

} // namespace discaro::app
