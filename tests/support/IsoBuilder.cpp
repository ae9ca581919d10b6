#include "support/IsoBuilder.h"

#include <algorithm>

namespace discaro::test {

namespace {

constexpr size_t kSector = 2048;

std::string both16(uint32_t value) {
    return little16(value) + big16(value);
}

std::string both32(uint32_t value) {
    return little32(value) + big32(value);
}

std::string padded(std::string text, size_t length, char filler = ' ') {
    text.resize(length, filler);
    return text;
}

std::string stampText(const std::array<uint8_t, 7>& stamp) {
    return {reinterpret_cast<const char*>(stamp.data()), stamp.size()};
}

char byteOf(size_t value) {
    return static_cast<char>(static_cast<uint8_t>(value));
}

} // namespace

std::string little16(uint32_t value) {
    return {byteOf(value), byteOf(value >> 8)};
}

std::string little32(uint32_t value) {
    return little16(value) + little16(value >> 16);
}

std::string big16(uint32_t value) {
    return {byteOf(value >> 8), byteOf(value)};
}

std::string big32(uint32_t value) {
    return big16(value >> 16) + big16(value);
}

std::string big64(uint64_t value) {
    return big32(static_cast<uint32_t>(value >> 32)) + big32(static_cast<uint32_t>(value));
}

std::string ucs2(std::string_view text) {
    std::string result;
    for (size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at]);
        const size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : 3;
        uint32_t code = length == 1 ? lead : lead & (0xFF >> (length + 1));
        for (size_t i = 1; i < length; ++i)
            code = code << 6 | (static_cast<unsigned char>(text[at + i]) & 0x3F);
        result += big16(code);
        at += length;
    }
    return result;
}

std::string IsoEntry::bytes() const {
    std::string body(1, byteOf(extendedBlocks));
    body += little32(block) + big32(bigBlock.value_or(block));
    body += little32(size) + big32(bigSize.value_or(size));
    body += stampText(stamp);
    body += byteOf(flags);
    body += std::string(2, '\0') + both16(1);
    body += byteOf(identifierLength.value_or(static_cast<uint8_t>(identifier.size())));
    body += identifier;
    if (body.size() % 2 == 0)
        body += '\0';
    body += systemUse;
    if (body.size() % 2 == 0)
        body += '\0';
    return byteOf(length.value_or(static_cast<uint8_t>(body.size() + 1))) + body;
}

IsoEntry isoFile(std::string identifier, uint32_t block, uint32_t size, std::string systemUse) {
    return {.identifier = std::move(identifier),
            .block = block,
            .size = size,
            .flags = 0,
            .systemUse = std::move(systemUse)};
}

IsoEntry isoDirectory(std::string identifier, uint32_t block, uint32_t size, std::string systemUse) {
    return {.identifier = std::move(identifier),
            .block = block,
            .size = size,
            .flags = 2,
            .systemUse = std::move(systemUse)};
}

namespace susp {

std::string entry(std::string_view name, std::string_view content) {
    std::string bytes(name);
    bytes += byteOf(content.size() + 4);
    bytes += '\1';
    bytes += content;
    return bytes;
}

std::string mark(uint8_t skip) {
    return entry("SP", std::string("\xBE\xEF") + byteOf(skip));
}

std::string name(std::string_view text, unsigned flags) {
    return entry("NM", byteOf(flags) + std::string(text));
}

std::string mode(uint32_t mode) {
    return entry("PX", both32(mode) + both32(1) + both32(0) + both32(0));
}

std::string modified(const std::array<uint8_t, 7>& stamp) {
    return entry("TF", '\2' + stampText(stamp));
}

std::string modifiedLong(std::string_view digits, int quarters) {
    const std::string stamp = std::string(digits) + static_cast<char>(quarters);
    return entry("TF", '\x83' + padded("19700101000000", 16, '0') + '\0' + stamp);
}

std::string link(std::string_view target) {
    return entry("SL", std::string(2, '\0') + byteOf(target.size()) + std::string(target));
}

std::string continuation(uint32_t block, uint32_t offset, uint32_t length) {
    return entry("CE", both32(block) + both32(offset) + both32(length));
}

std::string childLink(uint32_t block) {
    return entry("CL", both32(block));
}

std::string relocated() {
    return entry("RE", "");
}

std::string end() {
    return entry("ST", "");
}

} // namespace susp

IsoBuilder::IsoBuilder(uint32_t sectors)
    : m_image(sectors * kSector, '\0') {}

void IsoBuilder::put(uint32_t sector, std::string_view bytes, uint32_t offset) {
    const size_t at = sector * kSector + offset;
    if (m_image.size() < at + bytes.size())
        m_image.resize((at + bytes.size() + kSector - 1) / kSector * kSector, '\0');
    m_image.replace(at, bytes.size(), bytes);
}

// The fields that are read; the others are blank as most writers leave them.
void IsoBuilder::descriptor(uint32_t sector, unsigned type, const Volume& volume) {
    std::string bytes = byteOf(type) + std::string("CD001\1\0", 7) + padded("", 32);
    bytes += volume.label;
    bytes.resize(80, '\0');
    bytes += both32(volume.blocks.value_or(static_cast<uint32_t>(m_image.size() / kSector)));
    bytes.resize(120, '\0');
    bytes += both16(1) + both16(1) + both16(volume.blockSize);
    bytes.resize(156, '\0');
    bytes += isoDirectory(std::string(1, '\0'), volume.rootBlock, volume.rootSize).bytes();
    put(sector, padded(bytes, kSector, '\0'));
}

void IsoBuilder::primary(uint32_t sector, const Volume& volume) {
    auto named = volume;
    named.label = padded(volume.label, 32);
    descriptor(sector, 1, named);
}

void IsoBuilder::joliet(uint32_t sector, const Volume& volume, std::string_view escape) {
    auto named = volume;
    named.label = ucs2(padded(volume.label, 16));
    descriptor(sector, 2, named);
    put(sector, escape, 88);
}

void IsoBuilder::terminator(uint32_t sector) {
    put(sector, std::string_view("\xFF"
                                 "CD001\1",
                                 7));
}

uint32_t IsoBuilder::directory(uint32_t sector, uint32_t parent, const std::vector<IsoEntry>& entries,
                               const std::string& ownSystemUse) {
    auto self = isoDirectory(std::string(1, '\0'), sector, 2048, ownSystemUse);
    std::vector<IsoEntry> all = {self, isoDirectory("\1", parent)};
    all.insert(all.end(), entries.begin(), entries.end());
    const auto size = records(sector, all);
    self.size = size;
    put(sector, self.bytes());
    return size;
}

uint32_t IsoBuilder::records(uint32_t sector, const std::vector<IsoEntry>& entries) {
    std::string content;
    for (const auto& entry : entries) {
        const auto bytes = entry.bytes();
        if (content.size() % kSector + bytes.size() > kSector)
            content.resize((content.size() / kSector + 1) * kSector, '\0');
        content += bytes;
    }
    content.resize((content.size() + kSector - 1) / kSector * kSector, '\0');
    put(sector, content);
    return static_cast<uint32_t>(content.size());
}

IsoBuilder plainIso(const std::vector<IsoEntry>& entries, uint32_t sectors) {
    IsoBuilder builder(sectors);
    const auto size = builder.directory(20, 20, entries);
    builder.primary(16, {.rootBlock = 20, .rootSize = size});
    builder.terminator(17);
    return builder;
}

IsoBuilder rockRidgeIso(const std::vector<IsoEntry>& entries, uint32_t sectors) {
    IsoBuilder builder(sectors);
    const auto size = builder.directory(20, 20, entries, susp::mark());
    builder.primary(16, {.rootBlock = 20, .rootSize = size});
    builder.terminator(17);
    return builder;
}

IsoBuilder jolietIso(const std::vector<IsoEntry>& entries, uint32_t sectors) {
    IsoBuilder builder(sectors);
    builder.directory(20, 20, {});
    const auto size = builder.directory(21, 21, entries);
    builder.primary(16, {.label = "PRIMARY", .rootBlock = 20});
    builder.joliet(17, {.label = "Joliet", .rootBlock = 21, .rootSize = size});
    builder.terminator(18);
    return builder;
}

} // namespace discaro::test
