#include "support/ExecutableBuilder.h"

#include <iconv.h>

#include <algorithm>
#include <map>
#include <ostream>
#include <stdexcept>

namespace discaro::disc {

void PrintTo(const VersionTexts& texts, std::ostream* stream) {
    for (const auto& text : {texts.companyName, texts.fileDescription, texts.legalCopyright, texts.productName,
                             texts.productVersion, texts.internalName, texts.originalFileName})
        *stream << '"' << text << "\" ";
}

} // namespace discaro::disc

namespace discaro::test {

namespace {

std::string word(size_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}

std::string doubleWord(size_t value) {
    return word(value & 0xFFFF) + word(value >> 16);
}

void pad(std::string& bytes, size_t alignment, char filling = '\0') {
    while (bytes.size() % alignment != 0)
        bytes += filling;
}

std::string utf16(std::string_view text) {
    const auto converter = iconv_open("UTF-16LE", "UTF-8");
    std::string input(text);
    std::string output(text.size() * 4 + 4, '\0');
    char* from = input.data();
    char* to = output.data();
    size_t inputLeft = input.size();
    size_t outputLeft = output.size();
    const bool failed = iconv(converter, &from, &inputLeft, &to, &outputLeft) == static_cast<size_t>(-1);
    iconv_close(converter);
    if (failed)
        throw std::invalid_argument("not UTF-8: " + input);
    output.resize(output.size() - outputLeft);
    return output;
}

// Writes the blocks of one version resource.
class VersionWriter {
public:
    VersionWriter(bool wide, const VersionHabits& habits)
        : m_wide(wide)
        , m_habits(habits) {}

    std::string root(const VersionContent& content) const {
        std::vector<std::string> parts;
        for (const auto& table : content.tables)
            parts.push_back(tablePart(table));
        if (!content.translations.empty())
            parts.insert(m_habits.listsTranslationsFirst ? parts.begin() : parts.end(), translationPart(content));
        std::string fixed = doubleWord(0xFEEF04BD) + doubleWord(0x10000);
        fixed.resize(52, '\0');
        const auto told = static_cast<size_t>(m_habits.fixedInfoLength);
        return block({"VS_VERSION_INFO", fixed, told, false}, parts, m_habits.rootLengthError);
    }

private:
    struct Head {
        std::string key;
        std::string value;
        size_t valueLength = 0; // as told
        bool isText = false;
    };

    std::string encoded(std::string_view text) const { return m_wide ? utf16(text) : std::string(text); }
    std::string terminator() const { return std::string(m_wide ? 2 : 1, '\0'); }

    std::string tablePart(const VersionTable& table) const {
        std::vector<std::string> texts;
        for (const auto& [key, value] : table.texts)
            texts.push_back(textBlock(key, value));
        const auto inner = block({table.key, "", m_habits.tableValueLength, true}, texts, m_habits.tableLengthError);
        return block({m_habits.tablePartKey, "", 0, true}, {inner}, 0);
    }

    std::string textBlock(const std::string& key, const std::string& text) const {
        const auto value = encoded(text) + (m_habits.terminatesTexts ? terminator() : "");
        const bool inCharacters = m_wide && !m_habits.countsTextsInBytes;
        return block({key, value, inCharacters ? value.size() / 2 : value.size(), true}, {}, m_habits.textLengthError);
    }

    std::string translationPart(const VersionContent& content) const {
        std::string value;
        for (const auto& [language, codePage] : content.translations)
            value += word(language) + word(codePage);
        return block({"VarFileInfo", "", 0, true}, {block({"Translation", value, value.size(), false}, {}, 0)}, 0);
    }

    std::string block(const Head& head, const std::vector<std::string>& children, int lengthError) const {
        std::string body =
            word(head.valueLength) + (m_wide ? word(head.isText ? 1 : 0) : "") + encoded(head.key) + terminator();
        body.insert(0, 2, '\0');
        if (m_habits.padsKeys)
            pad(body, 4, m_habits.padding);
        body += head.value;
        for (const auto& child : children) {
            if (m_habits.padsBlocks)
                pad(body, 4, m_habits.padding);
            body += child;
        }
        if (m_habits.countsPaddingBehind)
            pad(body, 4, m_habits.padding);
        putWord(body, 0, static_cast<uint16_t>(static_cast<int>(body.size()) + lengthError));
        return body;
    }

    bool m_wide;
    const VersionHabits& m_habits;
};

// Named ones first, then by number.
bool before(const ResourceName& left, const ResourceName& right) {
    if (left.index() != right.index())
        return std::holds_alternative<std::string>(left);
    return left < right;
}

struct TreeOrder {
    bool operator()(const ResourceName& left, const ResourceName& right) const { return before(left, right); }
};

using Languages = std::vector<const Resource*>;
using Names = std::map<ResourceName, Languages, TreeOrder>;
using Types = std::map<ResourceName, Names, TreeOrder>;

Types grouped(const std::vector<Resource>& resources) {
    Types types;
    for (const auto& resource : resources)
        types[resource.type][resource.name].push_back(&resource);
    return types;
}

// Lays out the tree of a .rsrc section: directories, leaves, names, then the data.
class TreeWriter {
public:
    explicit TreeWriter(const std::vector<Resource>& resources)
        : m_types(grouped(resources)) {
        measure();
        m_tree += directory(m_types);
        for (const auto& [type, names] : m_types)
            m_tree += directory(names);
        for (const auto& [type, names] : m_types) {
            for (const auto& [name, languages] : names)
                m_tree += leafDirectory(languages);
        }
    }

    // The whole tree with its data behind it, or the data apart.
    std::string tree(uint32_t dataAddress) const {
        auto bytes = m_tree + leaves(dataAddress) + m_names;
        pad(bytes, 8);
        return bytes;
    }
    std::string data() const { return m_data; }
    size_t treeLength() const { return tree(0).size(); }

private:
    static constexpr size_t kHigh = 0x8000'0000;

    static size_t directoryLength(size_t entries) { return 16 + 8 * entries; }

    void measure() {
        m_nextDirectory = directoryLength(m_types.size());
        size_t length = m_nextDirectory;
        size_t leafCount = 0;
        for (const auto& [type, names] : m_types) {
            length += directoryLength(names.size());
            for (const auto& [name, languages] : names) {
                length += directoryLength(languages.size());
                leafCount += languages.size();
            }
        }
        m_nextLeaf = length;
        m_namesStart = length + leafCount * 16;
    }

    template <typename Children>
    static std::string directoryHeader(const Children& children) {
        const auto named = std::ranges::count_if(
            children, [](const auto& child) { return std::holds_alternative<std::string>(child.first); });
        return std::string(12, '\0') + word(static_cast<size_t>(named)) +
               word(children.size() - static_cast<size_t>(named));
    }

    template <typename Children>
    std::string directory(const Children& children) {
        std::string bytes = directoryHeader(children);
        for (const auto& [name, inner] : children) {
            bytes += doubleWord(nameOf(name)) + doubleWord(kHigh | m_nextDirectory);
            m_nextDirectory += directoryLength(inner.size());
        }
        return bytes;
    }

    std::string leafDirectory(const Languages& languages) {
        std::string bytes = std::string(12, '\0') + word(0) + word(languages.size());
        for (const auto* resource : languages) {
            bytes += doubleWord(resource->language) + doubleWord(m_nextLeaf);
            m_nextLeaf += 16;
            m_places.emplace_back(m_data.size(), resource->data.size());
            m_data += resource->data;
            pad(m_data, 8);
        }
        return bytes;
    }

    size_t nameOf(const ResourceName& name) {
        if (const auto* number = std::get_if<uint16_t>(&name))
            return *number;
        const auto& text = std::get<std::string>(name);
        const size_t place = m_namesStart + m_names.size();
        m_names += word(text.size()) + utf16(text);
        return kHigh | place;
    }

    std::string leaves(uint32_t dataAddress) const {
        std::string bytes;
        for (const auto& [offset, length] : m_places)
            bytes += doubleWord(dataAddress + offset) + doubleWord(length) + doubleWord(0) + doubleWord(0);
        return bytes;
    }

    Types m_types;
    size_t m_nextDirectory = 0;
    size_t m_nextLeaf = 0;
    size_t m_namesStart = 0;
    std::string m_tree;
    std::string m_names;
    std::string m_data;
    std::vector<std::pair<size_t, size_t>> m_places;
};

constexpr uint32_t kPage = 0x1000;
constexpr uint32_t kSector = 0x200;

size_t roundedUp(size_t value, size_t unit) {
    return (value + unit - 1) / unit * unit;
}

struct Section {
    std::string name;
    std::string content;
    uint32_t extraMemory = 0;
};

std::string sectionHeader(const Section& section, size_t address, size_t offset, bool withoutSize) {
    std::string bytes = section.name;
    bytes.resize(8, '\0');
    bytes += doubleWord(withoutSize ? 0 : section.content.size() + section.extraMemory) + doubleWord(address);
    bytes += doubleWord(roundedUp(section.content.size(), kSector)) + doubleWord(offset);
    return bytes + std::string(12, '\0') + doubleWord(0x40000040);
}

std::string optionalHeader(bool wide, size_t treeAddress, size_t treeLength) {
    std::string bytes = word(wide ? 0x20B : 0x10B);
    bytes.resize(wide ? 24 : 28, '\0');
    bytes += wide ? doubleWord(0x40000000) + doubleWord(1) : doubleWord(0x400000);
    bytes += doubleWord(kPage) + doubleWord(kSector);
    bytes.resize(wide ? 108 : 92, '\0');
    bytes += doubleWord(16);
    std::string directories(16 * 8, '\0');
    putDoubleWord(directories, 16, static_cast<uint32_t>(treeAddress));
    putDoubleWord(directories, 20, static_cast<uint32_t>(treeLength));
    return bytes + directories;
}

// A name's word in a 16-bit table: a number with the high bit, or the place of a counted text
// behind the table.
std::string neName(const ResourceName& name, size_t namesStart, std::string& names) {
    if (const auto* number = std::get_if<uint16_t>(&name))
        return word(0x8000U | *number);
    const auto& text = std::get<std::string>(name);
    const size_t place = namesStart + names.size();
    names += static_cast<char>(text.size()) + text;
    return word(place);
}

using NeTypes = std::vector<std::pair<ResourceName, Languages>>;

NeTypes neGrouped(const std::vector<Resource>& resources) {
    NeTypes types;
    for (const auto& resource : resources) {
        auto found = std::ranges::find(types, resource.type, &NeTypes::value_type::first);
        if (found == types.end())
            found = types.insert(types.end(), {resource.type, {}});
        found->second.push_back(&resource);
    }
    return types;
}

} // namespace

void putWord(std::string& bytes, size_t offset, uint16_t value) {
    bytes.replace(offset, 2, word(value));
}

void putDoubleWord(std::string& bytes, size_t offset, uint32_t value) {
    bytes.replace(offset, 4, doubleWord(value));
}

VersionContent sampleVersion(const std::string& key) {
    const auto number = [&](size_t from) {
        return static_cast<uint16_t>(std::stoul(key.substr(from, 4), nullptr, 16));
    };
    const VersionTable table{.key = key,
                             .texts = {{"CompanyName", "Northwind Shipping"},
                                       {"FileDescription", "Cargo list, printed"},
                                       {"FileVersion", "3.1.0.2"},
                                       {"InternalName", "cargo"},
                                       {"LegalCopyright", "Copyright 1997"},
                                       {"OriginalFilename", "CARGO.EXE"},
                                       {"ProductName", "Cargo  for  Ships"},
                                       {"ProductVersion", "3.1"}}};
    return {.tables = {table}, .translations = {{number(0), number(4)}}};
}

disc::VersionTexts sampleTexts() {
    return {.companyName = "Northwind Shipping",
            .fileDescription = "Cargo list, printed",
            .legalCopyright = "Copyright 1997",
            .productName = "Cargo  for  Ships",
            .productVersion = "3.1",
            .internalName = "cargo",
            .originalFileName = "CARGO.EXE"};
}

std::string wideVersion(const VersionContent& content, const VersionHabits& habits) {
    return VersionWriter(true, habits).root(content);
}

std::string narrowVersion(const VersionContent& content, const VersionHabits& habits) {
    return VersionWriter(false, habits).root(content);
}

std::vector<Resource> iconResources(int count) {
    std::vector<Resource> resources;
    for (int number = 1; number <= count; ++number) {
        const auto name = static_cast<uint16_t>(number);
        const std::string picture(40, 'i');
        const auto group = word(0) + word(1) + word(1) + std::string("\x10\x10\x10\0", 4) + word(1) + word(4) +
                           doubleWord(picture.size()) + word(name);
        resources.push_back({kIconType, name, picture});
        resources.push_back({kGroupIconType, name, group});
    }
    return resources;
}

std::string stubFile(size_t length) {
    std::string bytes = "MZ";
    bytes.resize(length, '\0');
    return bytes;
}

Built peFile(const std::vector<Resource>& resources, const PeOptions& options) {
    const TreeWriter writer(resources);
    std::vector<Section> sections;
    for (int number = 0; number < options.sectionsBefore; ++number)
        sections.push_back({".code" + std::to_string(number), std::string(0x230, '\x90')});
    const size_t treeAddress = (sections.size() + 1) * size_t{kPage};
    const size_t treeExtent = writer.treeLength() + (options.dataInOwnSection ? 0 : writer.data().size());
    const size_t dataAddress =
        options.dataInOwnSection ? treeAddress + roundedUp(treeExtent, kPage) : treeAddress + writer.treeLength();
    auto tree = writer.tree(static_cast<uint32_t>(dataAddress));
    if (options.dataInOwnSection) {
        sections.push_back({".rsrc", tree});
        sections.push_back({".data", writer.data()});
    } else {
        sections.push_back({".rsrc", tree + writer.data(), options.virtualExtra});
    }

    Built built{.bytes = stubFile(options.stubLength), .header = options.stubLength};
    putDoubleWord(built.bytes, 0x3C, static_cast<uint32_t>(options.stubLength));
    const auto optional = optionalHeader(options.wide, treeAddress, treeExtent);
    built.bytes += "PE" + word(0) + word(options.wide ? 0x8664 : 0x14C) + word(sections.size()) +
                   std::string(12, '\0') + word(optional.size()) + word(0x102) + optional;
    size_t offset = roundedUp(built.bytes.size() + sections.size() * 40, kSector);
    std::string contents;
    size_t address = kPage;
    for (const auto& section : sections) {
        if (section.name == ".rsrc")
            built.tree = offset + contents.size();
        built.bytes += sectionHeader(section, address, offset + contents.size(), options.virtualSizeIsZero);
        address += roundedUp(section.content.size(), kPage);
        contents += section.content;
        pad(contents, kSector);
    }
    pad(built.bytes, kSector);
    built.bytes += contents;
    return built;
}

Built neFile(const std::vector<Resource>& resources, unsigned shift) {
    constexpr size_t kHeaderLength = 0x40;
    const auto types = neGrouped(resources);
    const size_t tableLength = 2 + types.size() * 8 + resources.size() * 12 + 2;
    const size_t unit = size_t{1} << shift;

    std::string names;
    std::string table = word(shift);
    for (const auto& [type, members] : types) {
        table += neName(type, tableLength, names) + word(members.size()) + doubleWord(0);
        for (const auto* member : members) // offsets and lengths follow when the names' length is known
            table += std::string(6, '\0') + neName(member->name, tableLength, names) + doubleWord(0);
    }
    table += word(0) + names + '\0';

    Built built{.bytes = stubFile(), .header = 0x80, .tree = 0x80 + kHeaderLength};
    putDoubleWord(built.bytes, 0x3C, 0x80);
    built.bytes += "NE";
    built.bytes.resize(built.tree, '\0');
    putWord(built.bytes, built.header + 0x24, kHeaderLength);
    putWord(built.bytes, built.header + 0x26, static_cast<uint16_t>(kHeaderLength + table.size()));
    built.bytes += table + std::string("\4demo\0\0\0", 8);
    size_t entry = built.tree + 2;
    for (const auto& [type, members] : types) {
        entry += 8;
        for (const auto* member : members) {
            pad(built.bytes, unit);
            putWord(built.bytes, entry, static_cast<uint16_t>(built.bytes.size() >> shift));
            putWord(built.bytes, entry + 2, static_cast<uint16_t>(roundedUp(member->data.size(), unit) >> shift));
            built.bytes += member->data;
            entry += 12;
        }
    }
    pad(built.bytes, unit);
    return built;
}

std::string iconFile(IconFileKind kind, int pictures) {
    const auto count = static_cast<size_t>(pictures);
    const std::string picture(0x28, '\x28');
    std::string bytes = word(0) + word(static_cast<size_t>(kind)) + word(count);
    for (size_t number = 0; number < count; ++number)
        bytes += std::string("\x10\x10\x10\0", 4) + word(1) + word(4) + doubleWord(picture.size()) +
                 doubleWord(6 + 16 * count + number * picture.size());
    for (size_t number = 0; number < count; ++number)
        bytes += picture;
    return bytes;
}

} // namespace discaro::test
