#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace discaro::disc {

// Larger directories are damage: this one holds a million entries.
constexpr uint64_t kMaxDirectorySize = uint64_t{64} << 20;

// Who listed which directory first. On a sound disc every directory has one place in the tree and no two share
// bytes; on a damaged one a directory may hold itself, and a few bytes may pretend to be any number of directories.
// The register ends both: a directory is listed for the place that listed it first and for no other, as often as
// that place asks, and all directories together may be no larger than the disc.
class DirectoryClaims {
public:
    explicit DirectoryClaims(uint64_t discSize)
        : m_bytesLeft(discSize) {}

    // The directory is what names its content (its first block), the place what names the entry that leads to it.
    // Returns what is wrong, or an empty text when the directory may be listed.
    std::string refusal(uint64_t directory, uint64_t place) const;

    // After listing: the bytes that the directory took up. Counts once for each directory.
    void listed(uint64_t directory, uint64_t place, uint64_t bytes);

private:
    std::unordered_map<uint64_t, uint64_t> m_places;
    uint64_t m_bytesLeft;
};

} // namespace discaro::disc
