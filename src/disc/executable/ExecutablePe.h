#pragma once

#include "disc/executable/ExecutableReader.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace discaro::disc {

// The resources of a 32- or 64-bit executable ("PE", "PE32+"): a tree of three levels (type, name,
// language) whose leaves tell where the data is. Format: "PE Format", the published description of
// the portable executable, its chapters on the optional header, the section table and the .rsrc
// section.
class PeResources {
public:
    // The header is the offset of the letters "PE". The reader must outlive the object.
    PeResources(ExecutableReader& reader, uint64_t header);

    // Icon groups that lead into the resource tree; what a walk may not visit any more is not
    // counted.
    int64_t iconGroups();

    // The version resource's bytes, of the resource number 1 before others and of the first
    // language that can be read; empty when there is none. At most 64 KiB.
    std::string versionResource();

private:
    struct Section {
        uint64_t address = 0; // where it is in memory
        uint64_t extent = 0;  // how much of the memory it takes
        uint64_t offset = 0;  // where it is in the file
        uint64_t length = 0;  // how much of it is in the file
    };
    struct Entry {
        uint32_t name = 0;   // a number, or with the high bit the place of a text
        uint32_t target = 0; // a leaf, or with the high bit a directory; counted from the root of the tree
    };

    void readSections(uint64_t table, uint16_t count, bool sectorsInFile);
    FileSpan fileSpan(uint64_t address) const;
    std::vector<Entry> entries(uint32_t directory);
    std::vector<Entry> entriesOfType(uint32_t type);
    bool leadsIntoTree(const Entry& entry) const;
    std::string firstReadable(const Entry& entry);
    std::string leafData(uint32_t leaf);

    ExecutableReader& m_reader;
    std::vector<Section> m_sections;
    FileSpan m_tree; // empty when the file has no resources
};

} // namespace discaro::disc
