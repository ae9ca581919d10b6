#include "support/UdfBuilder.h"

#include "support/IsoBuilder.h"

namespace discaro::test {

namespace {

constexpr size_t kSector = 2048;

enum Tag : unsigned {
    kSparing = 0,
    kPrimary = 1,
    kAnchor = 2,
    kPartition = 5,
    kLogical = 6,
    kTerminator = 8,
    kFileSet = 256,
    kIdentifier = 257,
    kEntry = 261,
    kExtendedEntry = 266
};

std::string little64(uint64_t value) {
    return little32(static_cast<uint32_t>(value)) + little32(static_cast<uint32_t>(value >> 32));
}

std::string zeros(size_t count) {
    return std::string(count, '\0');
}

std::string sized(std::string text, size_t length) {
    text.resize(length, '\0');
    return text;
}

std::string entityName(std::string_view name) {
    return sized(std::string(1, '\0') + std::string(name), 32);
}

uint32_t extentLength(uint32_t length, unsigned type) {
    return length | type << 30;
}

} // namespace

namespace udf {

std::string descriptor(unsigned tag, uint32_t location, std::string_view body) {
    std::string bytes = little16(tag) + little16(2) + zeros(2) + little16(1) + zeros(4) + little32(location);
    unsigned sum = 0;
    for (const char c : bytes)
        sum += static_cast<unsigned char>(c);
    bytes[4] = static_cast<char>(sum);
    bytes += body;
    return bytes;
}

std::string name8(std::string_view latin1) {
    return '\x08' + std::string(latin1);
}

std::string name16(std::string_view text) {
    return '\x10' + ucs2(text);
}

std::string shortExtent(uint32_t length, uint32_t block, unsigned type) {
    return little32(extentLength(length, type)) + little32(block);
}

std::string longExtent(uint32_t length, uint32_t block, unsigned partition, unsigned type) {
    return shortExtent(length, block, type) + little16(partition) + zeros(6);
}

std::string fileEntry(const FileEntry& entry) {
    std::string body = zeros(11) + static_cast<char>(entry.type) + zeros(6) + little16(entry.allocationKind);
    body.resize(40, '\0');
    body += little64(entry.size);
    body.resize((entry.isExtended ? 92 : 84) - 16, '\0');
    body.append(reinterpret_cast<const char*>(entry.stamp.data()), entry.stamp.size());
    body.resize((entry.isExtended ? 208 : 168) - 16, '\0');
    body += little32(static_cast<uint32_t>(entry.attributes.size()));
    body += little32(static_cast<uint32_t>(entry.allocation.size()));
    body += entry.attributes + entry.allocation;
    return descriptor(entry.isExtended ? kExtendedEntry : kEntry, entry.location, body);
}

std::string identifier(std::string_view name, uint32_t block, unsigned marks, unsigned partition,
                       uint32_t implementationUse) {
    std::string body = little16(1) + static_cast<char>(marks) + static_cast<char>(name.size());
    body += longExtent(kSector, block, partition) + little16(implementationUse);
    body += zeros(implementationUse) + std::string(name);
    return descriptor(kIdentifier, 0, sized(body, (body.size() + 3) / 4 * 4));
}

std::string plainMap() {
    return std::string("\1\6", 2) + little16(1) + little16(0);
}

std::string virtualMap() {
    return sized("\2\x40" + zeros(2) + entityName("*UDF Virtual Partition") + little16(1), 64);
}

std::string metadataMap(uint32_t fileBlock, uint32_t mirrorBlock) {
    return sized("\2\x40" + zeros(2) + entityName("*UDF Metadata Partition") + little16(1) + little16(0) +
                     little32(fileBlock) + little32(mirrorBlock),
                 64);
}

std::string sparableMap(unsigned packetLength, uint32_t tableSector) {
    return sized("\2\x40" + zeros(2) + entityName("*UDF Sparable Partition") + little16(1) + little16(0) +
                     little16(packetLength) + '\1' + '\0' + little32(kSector) + little32(tableSector),
                 64);
}

} // namespace udf

UdfBuilder::UdfBuilder(uint32_t sectors)
    : m_image(sectors * kSector, '\0') {}

void UdfBuilder::put(uint32_t sector, std::string_view bytes) {
    const size_t at = sector * kSector;
    if (m_image.size() < at + bytes.size())
        m_image.resize((at + bytes.size() + kSector - 1) / kSector * kSector, '\0');
    m_image.replace(at, bytes.size(), bytes);
}

void UdfBuilder::volume(const Volume& volume) {
    constexpr uint32_t kSequence = 240;
    put(volume.recognition, zeros(1) + "BEA01\1");
    put(volume.recognition + 1, zeros(1) + volume.revision + '\1');
    put(volume.recognition + 2, zeros(1) + "TEA01\1");
    put(256, udf::descriptor(kAnchor, 256, little32(16 * kSector) + little32(kSequence) + zeros(16)));
    put(kSequence, udf::descriptor(kPrimary, kSequence, little32(1)));
    logicalVolume(kSequence + 1, volume);
    const auto blocks = static_cast<uint32_t>(m_image.size() / kSector) - kStart;
    std::string partition = sized(little32(3) + little16(1) + little16(0), 188 - 16);
    put(kSequence + 2, udf::descriptor(kPartition, kSequence + 2, partition + little32(kStart) + little32(blocks)));
    put(kSequence + 3, udf::descriptor(kTerminator, kSequence + 3, ""));
    if (volume.fileSetPartition == 0)
        putBlock(volume.fileSetBlock, fileSet(volume.rootBlock, volume.rootPartition));
}

void UdfBuilder::logicalVolume(uint32_t sector, const Volume& volume) {
    std::string maps;
    for (const auto& map : volume.maps)
        maps += map;
    auto label = sized(udf::name8(volume.label), 127);
    label += static_cast<char>(volume.label.size() + 1);
    std::string body = sized(little32(2), 84 - 16) + label + little32(volume.blockSize);
    body = sized(body, 248 - 16) + udf::longExtent(kSector, volume.fileSetBlock, volume.fileSetPartition);
    body += little32(static_cast<uint32_t>(maps.size())) + little32(static_cast<uint32_t>(volume.maps.size()));
    put(sector, udf::descriptor(kLogical, sector, sized(body, 440 - 16) + maps));
}

std::string UdfBuilder::fileSet(uint32_t rootBlock, unsigned rootPartition) {
    return udf::descriptor(kFileSet, 0, zeros(400 - 16) + udf::longExtent(kSector, rootBlock, rootPartition));
}

void UdfBuilder::directory(uint32_t block, const std::vector<std::string>& identifiers) {
    std::string content = udf::identifier("", block, 2 | 8);
    for (const auto& identifier : identifiers)
        content += identifier;
    putBlock(block, udf::fileEntry({.type = 4, .size = content.size(), .allocationKind = 3, .allocation = content}));
}

void UdfBuilder::file(uint32_t block, std::string_view content) {
    const auto size = static_cast<uint32_t>(content.size());
    putBlock(block, udf::fileEntry({.size = size, .allocation = udf::shortExtent(size, block + 1)}));
    putBlock(block + 1, content);
}

UdfBuilder udfImage(const std::vector<std::string>& identifiers) {
    UdfBuilder builder;
    builder.volume({});
    builder.directory(1, identifiers);
    return builder;
}

} // namespace discaro::test
