#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::test {

// A directory record as it is to stand on the disc: nothing is checked, so that it may be as wrong as a test needs.
struct IsoEntry {
    std::string identifier;
    uint32_t block = 0;
    uint32_t size = 0;
    unsigned flags = 0; // 1 hidden, 2 directory, 4 associated, 128 more extents
    std::string systemUse = {};
    std::array<uint8_t, 7> stamp = {100, 1, 2, 3, 4, 5, 0}; // 2 January 2000, 03:04:05 GMT
    uint8_t extendedBlocks = 0;
    std::optional<uint32_t> bigBlock = {}; // the big-endian halves, where they differ
    std::optional<uint32_t> bigSize = {};
    std::optional<uint8_t> length = {};           // the record's, where it is a lie
    std::optional<uint8_t> identifierLength = {}; // likewise

    std::string bytes() const;
};

IsoEntry isoFile(std::string identifier, uint32_t block = 0, uint32_t size = 0, std::string systemUse = {});
IsoEntry isoDirectory(std::string identifier, uint32_t block, uint32_t size = 2048, std::string systemUse = {});

// Entries of the system use field. The name part's flags: 1 goes on in the next, 2 ".", 4 "..".
namespace susp {
std::string entry(std::string_view name, std::string_view content);
std::string mark(uint8_t skip = 0);                          // SP
std::string name(std::string_view text, unsigned flags = 0); // NM
std::string mode(uint32_t mode);                             // PX
std::string modified(const std::array<uint8_t, 7>& stamp);   // TF, short form
std::string modifiedLong(std::string_view digits,
                         int quarters = 0);                                 // TF, long form, with a creation stamp
std::string link(std::string_view target);                                  // SL
std::string continuation(uint32_t block, uint32_t offset, uint32_t length); // CE
std::string childLink(uint32_t block);                                      // CL
std::string relocated();                                                    // RE
std::string end();                                                          // ST
} // namespace susp

// UTF-8 as UCS-2, big-endian.
std::string ucs2(std::string_view text);

// The bytes of a number.
std::string little16(uint32_t value);
std::string little32(uint32_t value);
std::string big16(uint32_t value);
std::string big32(uint32_t value);
std::string big64(uint64_t value);

// Writes ISO 9660 images sector by sector.
class IsoBuilder {
public:
    // All zero at first.
    explicit IsoBuilder(uint32_t sectors = 40);

    void put(uint32_t sector, std::string_view bytes, uint32_t offset = 0);

    // Descriptors. The root is a directory of one sector unless told otherwise.
    struct Volume {
        std::string label = "LABEL";
        uint32_t rootBlock = 0;
        uint32_t rootSize = 2048;
        std::optional<uint32_t> blocks = {}; // of the volume; the image's when not given
        uint16_t blockSize = 2048;
    };
    void primary(uint32_t sector, const Volume& volume);
    void joliet(uint32_t sector, const Volume& volume, std::string_view escape = "%/E");
    void terminator(uint32_t sector);

    // A directory with the records of itself and its parent and these; none crosses a sector. Returns its size. The
    // system use of its own record is given apart.
    uint32_t directory(uint32_t sector, uint32_t parent, const std::vector<IsoEntry>& entries,
                       const std::string& ownSystemUse = {});

    // The same with no records but these.
    uint32_t records(uint32_t sector, const std::vector<IsoEntry>& entries);

    const std::string& image() const { return m_image; }

private:
    void descriptor(uint32_t sector, unsigned type, const Volume& volume);

    std::string m_image;
};

// An image with a primary descriptor at sector 16 whose root at sector 20 holds these entries; sectors 21 and up are
// free.
IsoBuilder plainIso(const std::vector<IsoEntry>& entries, uint32_t sectors = 40);

// The same with the mark of Rock Ridge.
IsoBuilder rockRidgeIso(const std::vector<IsoEntry>& entries, uint32_t sectors = 40);

// An image with a primary descriptor and an empty root at sector 20, and a Joliet one whose root at sector 21 holds
// these entries.
IsoBuilder jolietIso(const std::vector<IsoEntry>& entries, uint32_t sectors = 40);

} // namespace discaro::test
