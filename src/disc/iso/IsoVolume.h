#pragma once

#include "disc/iso/IsoRecord.h"
#include "disc/medium/Medium.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace discaro::disc {

// Where a volume's names come from.
enum class IsoNames { Plain, RockRidge, Joliet };

// An ISO 9660 volume (ECMA-119) by the descriptor in use: the Joliet one where there is one and its root directory
// can be read, else the primary.
struct IsoVolume {
    std::array<std::byte, 2048> descriptor{};
    IsoGeometry geometry;
    IsoNames names = IsoNames::Plain;
    size_t systemUseSkip = 0; // bytes in front of the Rock Ridge entries of each record
    uint64_t rootAddress = 0; // of the root's record, in the descriptor
    uint32_t rootBlock = 0;
    uint32_t rootSize = 0;

    // Without the blanks and NULs that pad it.
    std::string label() const;

    // The volume's stated size, or the medium's where that is no size of a disc that holds this root directory.
    uint64_t totalBytes() const;
};

// The volume whose descriptors follow the 16 system sectors of the session. Nothing when there is none, or when no
// root directory of it can be read. Throws base::RuntimeError (ReadFailure) where the medium fails.
std::optional<IsoVolume> readIsoVolume(const ByteSource& medium, uint64_t sessionStart);

} // namespace discaro::disc
