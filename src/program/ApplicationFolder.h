#pragma once

#include <filesystem>

namespace discaro::program {

// The folder of the executable when this user can write to it, or when it holds a catalogue and the user has none;
// else the user's data folder ($XDG_DATA_HOME/Discaro, default ~/.local/share/Discaro). Creates nothing.
std::filesystem::path findApplicationFolder(const std::filesystem::path& executableFolder);

// Makes the folder ready for a start: the folder itself, a catalogue where none stands, and the category list copied
// from the template when there is one. A catalogue that an interrupted maintenance run had parked beside it
// (kvt.tmp, kvt.tmo) comes back under its own name, of two the one that was changed last; an empty one is made only
// where no parked one is. To be called by whoever holds the mark of the single instance.
// Throws base::RuntimeError or std::filesystem::filesystem_error when the folder can't be made ready.
void prepareApplicationFolder(const std::filesystem::path& folder, const std::filesystem::path& categoryTemplate);

} // namespace discaro::program
