// Disc images of any bytes: recognised, opened, and walked as far as some limits with all facts and the ends of all
// files. The first byte says what the rest is: 0 pieces of an image (sector and length, 16 bits little-endian each,
// then that many bytes; the image is as long as the last of them needs), 1 a whole image file, 2 a cue sheet. Pieces
// keep seeds small, since the first sectors of a disc are empty.

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "disc/image/CueSheet.h"
#include "disc/image/OpenImage.h"
#include "disc/image/SectorSource.h"
#include "disc/medium/DiscBytes.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <deque>

using namespace discaro;

namespace {

constexpr size_t kSector = 2048;
constexpr size_t kMostSectors = 512;
constexpr size_t kMostDirectories = 300;
constexpr size_t kMostFiles = 3000;

class Memory : public disc::ByteSource {
public:
    explicit Memory(std::vector<std::byte> bytes)
        : m_bytes(std::move(bytes)) {}

    uint64_t size() const override { return m_bytes.size(); }

    size_t read(uint64_t offset, std::span<std::byte> buffer) const override {
        if (offset >= m_bytes.size())
            return 0;
        const auto count = std::min<uint64_t>(buffer.size(), m_bytes.size() - offset);
        std::copy_n(m_bytes.begin() + static_cast<std::ptrdiff_t>(offset), count, buffer.begin());
        return count;
    }

private:
    std::vector<std::byte> m_bytes;
};

std::vector<std::byte> assembled(disc::Bytes pieces) {
    std::vector<std::byte> image;
    while (pieces.size() > 4) {
        const size_t sector = disc::littleEndian<uint16_t>(pieces, 0) % kMostSectors;
        const auto piece = disc::part(pieces, 4, disc::littleEndian<uint16_t>(pieces, 2));
        const size_t end = sector * kSector + piece.size();
        if (image.size() < end)
            image.resize((end + kSector - 1) / kSector * kSector);
        std::ranges::copy(piece, image.begin() + static_cast<std::ptrdiff_t>(sector * kSector));
        pieces = pieces.subspan(4 + piece.size());
    }
    return image;
}

void require(bool condition) {
    if (!condition)
        std::abort();
}

void checkName(const std::string& name) {
    require(!name.empty() && name != "." && name != "..");
    require(base::isValidUtf8(name));
    require(name.find_first_of(std::string_view("\\/\0", 3)) == std::string::npos);
}

void readEnds(const disc::ByteSource& file) {
    std::array<std::byte, 5000> piece;
    for (const uint64_t offset : {uint64_t{0}, file.size() / 2, file.size() - std::min<uint64_t>(file.size(), 99)})
        base::skipErrors([&] { require(file.read(offset, piece) <= piece.size()); });
    require(file.read(file.size(), piece) == 0);
}

void visitFile(const disc::Medium& medium, const disc::Place& directory, const disc::Entry& file) {
    checkName(file.name);
    base::skipErrors([&] {
        const auto facts = medium.fileFacts(directory, file.place);
        require((facts.attributes & disc::attribute::kReadOnly) != 0);
        readEnds(*medium.open(directory, file.place));
    });
}

void walk(const disc::Medium& medium) {
    const auto facts = medium.facts();
    require(base::isValidUtf8(facts.label) && facts.serial.size() == 9);
    std::deque<std::pair<disc::Place, disc::Place>> open = {{medium.root(), medium.root()}};
    size_t files = 0;
    for (size_t i = 0; i < kMostDirectories && !open.empty(); ++i) {
        const auto parent = open.front().first;
        const auto directory = open.front().second;
        open.pop_front();
        base::skipErrors([&] {
            const auto listing = medium.list(parent, directory);
            for (const auto& entry : listing.directories) {
                checkName(entry.name);
                medium.fileFacts(directory, entry.place);
                if (open.size() < kMostDirectories)
                    open.emplace_back(directory, entry.place);
            }
            for (const auto& entry : listing.files)
                if (files++ < kMostFiles)
                    visitFile(medium, directory, entry);
        });
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0)
        return 0;
    const auto bytes = std::as_bytes(std::span(data, size)).subspan(1);
    if (data[0] == 2) {
        disc::parseCueSheet(disc::textOf(bytes));
        return 0;
    }
    auto image = data[0] == 0 ? assembled(bytes) : std::vector<std::byte>(bytes.begin(), bytes.end());
    base::skipErrors(
        [&] { walk(*disc::openMedium(disc::recogniseImage(std::make_shared<Memory>(std::move(image))))); });
    return 0;
}
