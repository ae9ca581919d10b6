#pragma once

// What the program says before it has a window.
namespace discaro::program {

// %1: the cause.
inline constexpr const char* kFolderNotReady = "The application folder can't be made ready.\n\n%1";
inline constexpr const char* kFolderNotReadyTitle = "Discaro";

} // namespace discaro::program
