#pragma once

#include "disc/medium/DiscBytes.h"
#include "disc/medium/Medium.h"

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

namespace discaro::disc {

// What the Rock Ridge entries of a directory record tell (SUSP 1.12 and RRIP 1.12).
struct RockRidgeFacts {
    std::string name;                    // NM; empty when the record has none
    std::optional<std::time_t> modified; // TF
    std::optional<uint32_t> mode;        // PX, as in stat()
    std::optional<uint32_t> relocatedTo; // CL: block of the directory that this record stands for
    bool isRelocated = false;            // RE: a directory that has its place elsewhere, by a CL
    bool hasLinkTarget = false;          // SL

    bool isDirectory() const;
    bool isSymbolicLink() const;
};

// Bytes in front of the entries in all other records, when the system use of the root's own record begins with the
// mark of Rock Ridge's carrier (SP; on discs with CD-ROM XA attributes behind those); else nothing.
std::optional<size_t> systemUseSkip(Bytes rootSystemUse);

// Reads the entries of the records of one directory, and the continuation areas that they lead to.
class RockRidgeReader {
public:
    // The allowance is how many bytes of continuation areas may be read for all records together.
    RockRidgeReader(const ByteSource& medium, uint64_t blockSize, size_t skip, uint64_t allowance);

    // Takes any bytes; an entry that cannot be read ends its area.
    RockRidgeFacts read(Bytes systemUse);

    // Whether the allowance was used up or a continuation area could not be read.
    bool incomplete() const { return m_incomplete; }

private:
    struct Continuation {
        uint64_t offset = 0;
        uint64_t length = 0;
    };

    std::optional<Continuation> readArea(Bytes area, RockRidgeFacts& facts);
    bool fetch(const Continuation& place, std::vector<std::byte>& bytes);

    const ByteSource& m_medium;
    uint64_t m_blockSize;
    size_t m_skip;
    uint64_t m_allowance;
    bool m_incomplete = false;
    bool m_nameGoesOn = false;
};

} // namespace discaro::disc
