#pragma once

#include "disc/medium/DiscBytes.h"

#include <cstdint>
#include <string>

namespace discaro::disc {

// A serial number as "XXXX-XXXX" in upper-case hexadecimal.
std::string serialText(uint32_t serial);

// The serial number of a volume, as the common desktop system of the discs' time shows it: four sums modulo 256, of
// the descriptor's bytes at offsets 0, 1, 2 and 3 modulo 4, in that order, as "XXXX-XXXX" in upper-case hexadecimal.
// For ISO 9660 the descriptor is the 2048 bytes of the volume descriptor in use (the Joliet one where it is in use,
// else the primary); for UDF it is the 512 bytes of the file set descriptor.
std::string volumeSerial(Bytes descriptor);

} // namespace discaro::disc
