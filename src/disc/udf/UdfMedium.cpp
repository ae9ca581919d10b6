#include "disc/udf/UdfMedium.h"

#include "base/RuntimeError.h"
#include "disc/medium/ShownNames.h"
#include "disc/medium/VolumeSerial.h"
#include "disc/udf/UdfLayout.h"
#include "disc/udf/UdfTag.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace discaro::disc {

namespace {

// A place's first number is the address of the file entry. The second tells which directory entry leads to it: the
// block of the directory's own entry and, in the low bits, the position in the directory; then two marks.
constexpr unsigned kPositionBits = 26; // directories are at most 64 MiB
constexpr uint64_t kHidden = uint64_t{1} << 62;
constexpr uint64_t kDirectory = uint64_t{1} << 63;
constexpr uint64_t kEntryMask = kHidden - 1;

uint64_t packed(const UdfAddress& address) {
    return uint64_t{address.partition} << 32 | address.block;
}

UdfAddress addressOf(const Place& place) {
    return {static_cast<uint32_t>(place.number), static_cast<uint16_t>(place.number >> 32)};
}

// What is read of a directory, and what was wrong.
struct Content {
    std::vector<std::byte> bytes;
    std::string damage;
};

Content readContent(const std::shared_ptr<const ByteSource>& medium, const UdfPartitions& partitions,
                    const UdfFile& directory) {
    constexpr size_t kPiece = 65536;
    const ExtentBytes source(medium, udfExtents(*medium, partitions, directory));
    Content content;
    if (source.size() > kMaxDirectorySize)
        content.damage = "the directory is too large to be one";
    const auto size = std::min(source.size(), kMaxDirectorySize);
    try {
        while (content.bytes.size() < size) {
            std::vector<std::byte> piece(std::min<uint64_t>(kPiece, size - content.bytes.size()));
            source.read(content.bytes.size(), piece);
            content.bytes.insert(content.bytes.end(), piece.begin(), piece.end());
        }
    } catch (const base::RuntimeError& error) {
        if (error.is(base::ErrorNumber::DriveNotReady))
            throw;
        content.damage = error.description();
    }
    return content;
}

// Turns the file identifier descriptors (ECMA-167, 4/14.4) of a directory into entries.
class UdfListing {
public:
    explicit UdfListing(const UdfAddress& directory)
        : m_directory(directory) {}

    Listing read(Bytes content) {
        size_t position = 0;
        while (position < content.size()) {
            const auto length = add(part(content, position), position);
            if (length == 0) {
                m_listing.damage = "a record of the directory is damaged";
                break;
            }
            position += length;
        }
        return std::move(m_listing);
    }

private:
    // ECMA-167, 4/14.4.3.
    enum Characteristic : unsigned { kHiddenBit = 1, kDirectoryBit = 2, kDeletedBit = 4, kParentBit = 8 };

    // Returns the length of the descriptor, 0 when there is none.
    size_t add(Bytes bytes, size_t position) {
        using namespace udf_identifier;
        const size_t nameLength = byteAt(bytes, kNameLength);
        const size_t nameAt = kHead + littleEndian<uint16_t>(bytes, kOwnLength);
        if (!hasTag(bytes, UdfTag::FileIdentifier) || nameAt + nameLength > bytes.size())
            return 0;
        const unsigned characteristics = byteAt(bytes, kCharacteristics);
        const auto extent = littleEndian<uint32_t>(bytes, kEntry + udf_allocation::kLength);
        const bool isRecorded = (extent & udf_allocation::kLengthMask) != 0;
        if ((characteristics & (kDeletedBit | kParentBit)) == 0 && isRecorded)
            addEntry(bytes, bytes.subspan(nameAt, nameLength), position);
        return (nameAt + nameLength + 3) / 4 * 4;
    }

    void addEntry(Bytes bytes, Bytes name, size_t position) {
        const unsigned characteristics = byteAt(bytes, udf_identifier::kCharacteristics);
        const auto address = longAddress(bytes, udf_identifier::kEntry);
        const bool isDirectory = (characteristics & kDirectoryBit) != 0;
        Entry entry;
        entry.place.raw = decodeUdfText(name);
        entry.name = shownName(entry.place.raw);
        entry.isDirectory = isDirectory;
        entry.place.number = packed(address);
        entry.place.detail = (uint64_t{m_directory.block} << kPositionBits | position) |
                             ((characteristics & kHiddenBit) != 0 ? kHidden : 0) | (isDirectory ? kDirectory : 0);
        (isDirectory ? m_listing.directories : m_listing.files).push_back(std::move(entry));
    }

    UdfAddress m_directory;
    Listing m_listing;
};

} // namespace

UdfMedium::UdfMedium(std::shared_ptr<const ByteSource> sectors, UdfVolume volume)
    : m_sectors(std::move(sectors))
    , m_volume(std::move(volume))
    , m_claims(m_sectors->size()) {
    m_claims.listed(packed(m_volume.root), kEntryMask, 0);
}

VolumeFacts UdfMedium::facts() const {
    return {.label = m_volume.label,
            .fileSystem = "UDF",
            .serial = volumeSerial(m_volume.fileSet),
            .totalBytes = m_volume.totalBytes,
            .freeBytes = 0};
}

Place UdfMedium::root() const {
    return {packed(m_volume.root), kDirectory | kEntryMask, {}};
}

std::optional<UdfFile> UdfMedium::entryOf(const Place& place) const {
    return readUdfFile(*m_sectors, m_volume.partitions, addressOf(place));
}

Listing UdfMedium::list(const Place&, const Place& directory) const {
    const auto claimant = directory.detail & kEntryMask;
    if (auto refusal = m_claims.refusal(directory.number, claimant); !refusal.empty())
        return {.directories = {}, .files = {}, .damage = std::move(refusal)};
    const auto file = entryOf(directory);
    if (!file || file->type != UdfFile::kDirectory)
        throw base::RuntimeError(base::ErrorNumber::DirectoryDamaged, "it has no file entry");
    const auto content = readContent(m_sectors, m_volume.partitions, *file);
    if (content.bytes.empty() && !content.damage.empty())
        throw base::RuntimeError(base::ErrorNumber::DirectoryDamaged, content.damage);
    m_claims.listed(directory.number, claimant, content.bytes.size());
    auto listing = UdfListing(addressOf(directory)).read(content.bytes);
    if (!content.damage.empty())
        listing.damage = content.damage;
    return listing;
}

FileFacts UdfMedium::fileFacts(const Place&, const Place& file) const {
    const auto entry = entryOf(file);
    if (!entry)
        throw base::RuntimeError(base::ErrorNumber::FileDamaged, "it has no file entry");
    const bool isDirectory = (file.detail & kDirectory) != 0;
    FileFacts facts;
    facts.size = isDirectory || entry->type == UdfFile::kSymbolicLink ? 0 : entry->size;
    facts.modified = entry->modified;
    facts.attributes = attribute::kReadOnly | (isDirectory ? attribute::kDirectory : 0) |
                       ((file.detail & kHidden) != 0 ? attribute::kHidden : 0);
    return facts;
}

std::unique_ptr<ByteSource> UdfMedium::open(const Place&, const Place& file) const {
    auto entry = entryOf(file);
    if (!entry || (file.detail & kDirectory) != 0)
        throw base::RuntimeError(base::ErrorNumber::FileDamaged, "it has no content that can be read");
    if (entry->type == UdfFile::kSymbolicLink)
        entry->size = 0;
    return std::make_unique<ExtentBytes>(m_sectors, udfExtents(*m_sectors, m_volume.partitions, *entry));
}

} // namespace discaro::disc
