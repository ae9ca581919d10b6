#include "disc/image/NrgImage.h"

#include "base/RuntimeError.h"
#include "disc/medium/DiscBytes.h"
#include "disc/medium/TrackBytes.h"

#include <algorithm>
#include <map>
#include <string_view>

namespace discaro::disc {

namespace {

constexpr uint64_t kMaxChain = 1 << 20; // bytes: a disc has at most 99 tracks
constexpr size_t kDaoHeader = 22;
constexpr uint64_t kLeadSectors = 150;

std::vector<std::byte> bytesAt(const ByteSource& file, uint64_t offset, uint64_t length) {
    std::vector<std::byte> bytes(length);
    bytes.resize(file.read(offset, bytes));
    return bytes;
}

// The chain of chunks, or nothing when the file does not end in a pointer to one.
std::optional<std::vector<std::byte>> readChain(const ByteSource& file) {
    constexpr uint64_t kEnding = 12;
    if (file.size() < kEnding)
        return std::nullopt;
    const auto ending = bytesAt(file, file.size() - kEnding, kEnding);
    uint64_t start = 0;
    if (holdsText(ending, 0, "NER5"))
        start = bigEndian<uint64_t>(ending, 4);
    else if (holdsText(ending, 4, "NERO"))
        start = bigEndian<uint32_t>(ending, 8);
    else
        return std::nullopt;
    if (start >= file.size())
        return std::vector<std::byte>();
    return bytesAt(file, start, std::min(file.size() - start, kMaxChain));
}

uint8_t fromBcd(uint8_t value) {
    return static_cast<uint8_t>((value >> 4) * 10 + (value & 15));
}

// The bytes of a sector by the format's mode code; 0 for audio and for codes that are not known.
uint64_t strideOf(unsigned mode) {
    switch (mode) {
    case 0x00:
    case 0x02:
        return 2048;
    case 0x03:
        return 2336;
    case 0x05:
    case 0x06:
        return 2352;
    case 0x0F:
    case 0x11:
        return 2448;
    default:
        return 0;
    }
}

class ChainReader {
public:
    explicit ChainReader(std::shared_ptr<const ByteSource> file)
        : m_file(std::move(file)) {}

    void read(Bytes chain) {
        constexpr size_t kHead = 8;
        while (chain.size() >= kHead && !holdsText(chain, 0, "END!")) {
            const auto length = bigEndian<uint32_t>(chain, 4);
            readChunk(textOf(chain.first(4)), part(chain, kHead, length));
            chain = part(chain, kHead + uint64_t{length});
        }
        closeSession();
    }

    DiscData take() {
        if (m_tracks.empty())
            throw base::RuntimeError(base::ErrorNumber::FileSystemUnsupported, "the image has no data track");
        std::ranges::reverse(m_sessions);
        return {std::make_shared<TrackBytes>(std::move(m_tracks)), std::move(m_sessions)};
    }

private:
    void readChunk(std::string_view name, Bytes content) {
        if (name == "CUEX")
            readCues(content, [](Bytes cue) { return bigEndian<uint32_t>(cue, 4); });
        else if (name == "CUES")
            readCues(content, [](Bytes cue) {
                const uint32_t seconds = fromBcd(byteAt(cue, 5)) * 60U + fromBcd(byteAt(cue, 6));
                return static_cast<uint32_t>(seconds * 75 + fromBcd(byteAt(cue, 7)) - kLeadSectors);
            });
        else if (name == "DAOX")
            readDao<uint64_t>(content);
        else if (name == "DAOI")
            readDao<uint32_t>(content);
        else if (name == "ETN2")
            readEtn<uint64_t>(content);
        else if (name == "ETNF")
            readEtn<uint32_t>(content);
        else if (name == "SINF")
            closeSession();
    }

    // Addresses of the first index of each track.
    template <typename Address>
    void readCues(Bytes content, Address address) {
        constexpr size_t kCue = 8;
        for (; content.size() >= kCue; content = content.subspan(kCue))
            if (byteAt(content, 2) == 1)
                m_addresses[fromBcd(byteAt(content, 1))] = static_cast<int32_t>(address(content));
    }

    // Disc at once: a header with the number of the first track, then for each track its place in the file.
    template <typename Offset>
    void readDao(Bytes content) {
        constexpr size_t kEntry = 18 + 3 * sizeof(Offset);
        unsigned number = byteAt(content, kDaoHeader - 2);
        for (content = part(content, kDaoHeader); content.size() >= kEntry; content = content.subspan(kEntry)) {
            const uint64_t stated = bigEndian<uint16_t>(content, 12);
            const auto stride = strideOf(byteAt(content, 14));
            const uint64_t start = bigEndian<Offset>(content, 18 + sizeof(Offset));
            const uint64_t end = bigEndian<Offset>(content, 18 + 2 * sizeof(Offset));
            const auto known = m_addresses.find(number++);
            const uint64_t address = known == m_addresses.end() ? m_address : toSector(known->second);
            addTrack(start, end > start ? end - start : 0, stride == 0 ? 0 : stated, address,
                     stated > 0 ? stated : 2352);
        }
    }

    // Track at once: place in the file, size, mode, address.
    template <typename Offset>
    void readEtn(Bytes content) {
        constexpr size_t kEntry = 2 * sizeof(Offset) + (sizeof(Offset) == 8 ? 16 : 12);
        for (; content.size() >= kEntry; content = content.subspan(kEntry)) {
            const auto mode = bigEndian<uint32_t>(content, 2 * sizeof(Offset));
            const auto address = bigEndian<uint32_t>(content, 2 * sizeof(Offset) + 4);
            const auto stride = strideOf(mode);
            addTrack(bigEndian<Offset>(content, 0), bigEndian<Offset>(content, sizeof(Offset)), stride,
                     toSector(static_cast<int32_t>(address)), stride > 0 ? stride : 2352);
        }
    }

    static uint64_t toSector(int32_t address) { return address > 0 ? static_cast<uint64_t>(address) : 0; }

    // Stride 0 means audio.
    void addTrack(uint64_t offset, uint64_t length, uint64_t stride, uint64_t address, uint64_t anyStride) {
        const uint64_t count = length / anyStride;
        m_address = address + count;
        if (stride < kSectorSize)
            return;
        m_tracks.push_back({m_file, offset, stride, dataOffset(offset, stride), address, count});
        if (!m_sessionHasData)
            m_sessions.push_back(address);
        m_sessionHasData = true;
    }

    uint64_t dataOffset(uint64_t offset, uint64_t stride) const {
        if (stride == 2336)
            return 8;
        if (stride < 2352)
            return 0;
        constexpr size_t kModeByte = 15;
        return byteAt(bytesAt(*m_file, offset, 16), kModeByte) == 2 ? 24 : 16;
    }

    void closeSession() { m_sessionHasData = false; }

    std::shared_ptr<const ByteSource> m_file;
    std::map<unsigned, int32_t> m_addresses;
    uint64_t m_address = 0; // behind the track read last
    bool m_sessionHasData = false;
    std::vector<Track> m_tracks;
    std::vector<uint64_t> m_sessions;
};

} // namespace

std::optional<DiscData> openNrg(const std::shared_ptr<const ByteSource>& file) {
    const auto chain = readChain(*file);
    if (!chain)
        return std::nullopt;
    ChainReader reader(file);
    reader.read(*chain);
    return reader.take();
}

} // namespace discaro::disc
