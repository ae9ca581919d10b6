#pragma once

#include "base/Descriptor.h"

#include <string>

namespace discaro::disc {

// An open folder and its path, which holds no link.
struct LinkGround {
    int folder;
    const std::string& path;
};

// Follows a symbolic link, told by its path below the folder, and opens what it leads to: with O_PATH or for reading.
// Nothing outside the folder is looked at on the way, so that a link on a disc reaches neither the user's other files
// nor a network. Empty where the way leaves the folder or doesn't end at a regular file.
base::Descriptor openLinked(const LinkGround& ground, std::string link, int access);

} // namespace discaro::disc
