#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::test {

// Pieces of UDF structures as they are to stand on the disc; nothing is checked.
namespace udf {

// A descriptor with its tag: checksum and all.
std::string descriptor(unsigned tag, uint32_t location, std::string_view body);

// Compressed unicode of 8 and of 16 bits a character; the text of the latter is UTF-8.
std::string name8(std::string_view latin1);
std::string name16(std::string_view text);

// Allocation descriptors. Type 0 recorded, 1 and 2 not recorded, 3 more descriptors at the address.
std::string shortExtent(uint32_t length, uint32_t block, unsigned type = 0);
std::string longExtent(uint32_t length, uint32_t block, unsigned partition = 0, unsigned type = 0);

struct FileEntry {
    unsigned type = 5; // 4 directory, 5 file, 12 symbolic link, 248 virtual table, 250 metadata
    uint64_t size = 0;
    unsigned allocationKind = 0; // 0 short, 1 long, 3 the content itself
    std::string allocation = {};
    bool isExtended = false;
    std::string attributes = {}; // extended attributes, in front of the allocation
    std::array<uint8_t, 12> stamp = {0, 0x10, 0xD0, 7, 1, 2, 3, 4, 5, 0, 0, 0}; // 2 January 2000, 03:04:05 UTC
    uint32_t location = 0;                                                      // in the tag
};
std::string fileEntry(const FileEntry& entry);

// A directory's record. Marks: 1 hidden, 2 directory, 4 deleted, 8 parent.
std::string identifier(std::string_view name, uint32_t block, unsigned marks = 0, unsigned partition = 0,
                       uint32_t implementationUse = 0);

// Maps of the logical volume, for partition 0.
std::string plainMap();
std::string virtualMap();
std::string metadataMap(uint32_t fileBlock, uint32_t mirrorBlock);
std::string sparableMap(unsigned packetLength, uint32_t tableSector);

} // namespace udf

// Writes UDF images: recognition at sector 16, anchor at 256, the partition's block 0 at sector 300.
class UdfBuilder {
public:
    static constexpr uint32_t kStart = 300;

    // All zero at first.
    explicit UdfBuilder(uint32_t sectors = 400);

    void put(uint32_t sector, std::string_view bytes);
    void putBlock(uint32_t block, std::string_view bytes) { put(kStart + block, bytes); }

    struct Volume {
        std::string label = "Label";
        std::vector<std::string> maps = {udf::plainMap()};
        uint32_t fileSetBlock = 0; // where the file set is written, too, when its map is plain
        unsigned fileSetPartition = 0;
        uint32_t rootBlock = 1;
        unsigned rootPartition = 0;
        uint32_t blockSize = 2048;
        std::string revision = "NSR02";
        uint32_t recognition = 16; // sector of the recognition sequence
    };
    void volume(const Volume& volume);

    // The file set descriptor of the volume.
    static std::string fileSet(uint32_t rootBlock, unsigned rootPartition = 0);

    // A directory that is kept in its own entry.
    void directory(uint32_t block, const std::vector<std::string>& identifiers);

    // A file whose entry is at the block and whose content follows it.
    void file(uint32_t block, std::string_view content);

    const std::string& image() const { return m_image; }

private:
    void logicalVolume(uint32_t sector, const Volume& volume);

    std::string m_image;
};

// An image whose root, at block 1, holds these records; blocks 10 and up are free.
UdfBuilder udfImage(const std::vector<std::string>& identifiers);

} // namespace discaro::test
