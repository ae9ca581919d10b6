#pragma once

#include "disc/Medium.h"

#include <cstdint>

namespace discaro::disc {

// The number of icons that the file shows to its user: the icon groups of a 16-, 32- or 64-bit
// executable or library of any extension, 1 for an icon or cursor file, 0 for every other file and
// for what is too damaged to tell. Never negative. Throws only what the source throws.
int64_t countIcons(const ByteSource& source);

} // namespace discaro::disc
