#pragma once

// What the menu and the start of the program say.
namespace discaro::app {

// Where the program is started a second time.
inline constexpr const char* kAlreadyRunning = "Another Instance of Tavo - Discaro is already running.";
inline constexpr const char* kAlreadyRunningTitle = "Already Running";

// Why an entry of the menu is grey.
inline constexpr const char* kNoDisc = "There is no disc in the catalogue yet. Scan one first.";
inline constexpr const char* kNotThere = "This version of Discaro does not have this window yet.";

// While a window or a search gets ready.
inline constexpr const char* kLoading = "   Loading , Please Wait ...   ";
inline constexpr const char* kSearching = "Searching, please wait";

} // namespace discaro::app
