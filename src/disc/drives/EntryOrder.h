#pragma once

#include "disc/medium/Medium.h"

#include <optional>
#include <string_view>
#include <vector>

namespace discaro::disc {

// Puts directories in alphabetical order: that of their keys (base::orderKey, as the store orders texts), ties by the
// exact text, what is left in the order given. Each one gets a name of its own: of several with the same text the first
// keeps it and the others are shown as "NAME (2)", "NAME (3)", so that a path always means one directory.
void orderDirectories(std::vector<Entry>& directories);

// Where the name stands among ordered directories: the exact name, else the first that differs in case only.
std::optional<size_t> findDirectory(const std::vector<Entry>& directories, std::string_view name);

// Where the name stands among files in any order, likewise.
std::optional<size_t> findFile(const std::vector<Entry>& files, std::string_view name);

} // namespace discaro::disc
