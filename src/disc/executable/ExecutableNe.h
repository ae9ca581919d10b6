#pragma once

#include "disc/executable/ExecutableReader.h"

#include <cstdint>
#include <optional>
#include <string>

namespace discaro::disc {

// The resources of a 16-bit executable ("NE"): one table, a block for each type with an entry for
// each resource. Format: the published description of the 16-bit segmented executable, its chapter
// on the resource table.
class NeResources {
public:
    // The header is the offset of the letters "NE". The reader must outlive the object.
    NeResources(ExecutableReader& reader, uint64_t header);

    // Icon groups whose data begins in the file; what a walk may not visit any more is not counted.
    int64_t iconGroups();

    // The version resource's bytes, of the resource number 1 before others; empty when there is
    // none. At most 64 KiB, up to the file's alignment longer than the resource itself.
    std::string versionResource();

private:
    struct Block {
        uint64_t entries = 0; // where the first one is
        uint16_t count = 0;
    };

    template <typename Visitor>
    void forEachResource(uint16_t type, Visitor visit);
    FileSpan dataSpan(uint64_t entry);

    ExecutableReader& m_reader;
    uint64_t m_table = 0; // 0 when the file has no resources
    unsigned m_shift = 0; // offsets and lengths are shifted left by it
};

} // namespace discaro::disc
