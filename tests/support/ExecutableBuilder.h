#pragma once

#include "disc/executable/VersionResource.h"

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace discaro::disc {

// How a failing test shows texts.
void PrintTo(const VersionTexts& texts, std::ostream* stream);

} // namespace discaro::disc

namespace discaro::test {

// Writers of small executables, version resources and icon files, sound ones and ones with the
// faults of old compilers. What else may be wrong with a file is patched into its bytes.

void putWord(std::string& bytes, size_t offset, uint16_t value);
void putDoubleWord(std::string& bytes, size_t offset, uint32_t value);

// --- Version resources

struct VersionTable {
    std::string key; // eight hexadecimal digits: language, code page
    std::vector<std::pair<std::string, std::string>> texts;
};

struct VersionContent {
    std::vector<VersionTable> tables;
    std::vector<std::pair<uint16_t, uint16_t>> translations; // language, code page; none: no list is written
};

// How a compiler writes. The defaults are the published layout.
struct VersionHabits {
    bool countsTextsInBytes = false; // of the UTF-16 form
    bool padsKeys = true;
    bool padsBlocks = true;
    char padding = '\0';
    bool countsPaddingBehind = false; // a block's length holds the padding to the next one
    bool terminatesTexts = true;
    bool listsTranslationsFirst = false;
    int textLengthError = 0; // added to the length that each block with a text tells
    int tableLengthError = 0;
    int rootLengthError = 0;
    int fixedInfoLength = 52;      // as told; the structure itself always has 52 bytes
    uint16_t tableValueLength = 0; // told by the tables, which have no value
    std::string tablePartKey = "StringFileInfo";
};

// One table with all the texts that are read, one more, and its translation; and what is read of
// it.
VersionContent sampleVersion(const std::string& key = "040904B0");
disc::VersionTexts sampleTexts();

// The UTF-16 form (texts are given as UTF-8) and the 16-bit form (texts are given as they shall
// stand).
std::string wideVersion(const VersionContent& content, const VersionHabits& habits = {});
std::string narrowVersion(const VersionContent& content, const VersionHabits& habits = {});

// --- Executables

constexpr uint16_t kIconType = 3;
constexpr uint16_t kGroupIconType = 14;
constexpr uint16_t kVersionType = 16;

using ResourceName = std::variant<uint16_t, std::string>; // a number or an ASCII name

struct Resource {
    ResourceName type;
    ResourceName name;
    std::string data;
    uint16_t language = 0x409;
};

// Icon groups 1 to count, each with its picture.
std::vector<Resource> iconResources(int count);

struct Built {
    std::string bytes;
    size_t header = 0; // of the letters "PE" or "NE"
    size_t tree = 0;   // of the resource tree or table
};

struct PeOptions {
    bool wide = false; // PE32+
    int sectionsBefore = 1;
    bool virtualSizeIsZero = false;
    uint32_t virtualExtra = 0; // memory beyond what the file holds
    bool dataInOwnSection = false;
    size_t stubLength = 0x80;
};

// A 32- or 64-bit executable with the resources, in the tree's order: named ones first, then by
// number; languages as given.
Built peFile(const std::vector<Resource>& resources, const PeOptions& options = {});

// A 16-bit executable with the resources; types in the order of their first resource.
Built neFile(const std::vector<Resource>& resources, unsigned shift = 4);

// A program for the time before windows: a stub and nothing behind it.
std::string stubFile(size_t length = 0x80);

// --- Icon files

enum class IconFileKind : uint16_t { Icon = 1, Cursor = 2 };

// With so many pictures.
std::string iconFile(IconFileKind kind, int pictures);

} // namespace discaro::test
