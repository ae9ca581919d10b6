#include "support/RawImage.h"

#include "support/IsoBuilder.h"

namespace discaro::test {

namespace {

constexpr size_t kSector = 2048;

char bcd(size_t value) {
    return static_cast<char>(value / 10 % 10 * 16 + value % 10);
}

// Synchronisation, the address as minute, second and frame, the mode.
std::string sectorHead(size_t number, char mode) {
    const size_t frame = number + 150;
    std::string head = std::string(1, '\0') + std::string(10, '\xFF') + std::string(1, '\0');
    head += {bcd(frame / 75 / 60), bcd(frame / 75 % 60), bcd(frame % 75), mode};
    return head;
}

// Each sector between what stands in front of it and what stands behind it.
template <typename Before>
std::string wrapped(std::string_view image, const Before& before, size_t behind) {
    std::string result;
    for (size_t at = 0; at < image.size(); at += kSector) {
        std::string sector(image.substr(at, kSector));
        sector.resize(kSector, '\0');
        result += before(at / kSector) + sector + std::string(behind, '\xEC');
    }
    return result;
}

std::string subheader() {
    return std::string("\0\0\x08\0\0\0\x08\0", 8);
}

std::string chunk(std::string_view name, const std::string& content) {
    return std::string(name) + big32(static_cast<uint32_t>(content.size())) + content;
}

// Writes the data of all tracks, then the chunks of the sessions.
class NrgWriter {
public:
    explicit NrgWriter(int version)
        : m_version(version) {}

    std::string offset(uint64_t value) const {
        return m_version == 1 ? big32(static_cast<uint32_t>(value)) : big64(value);
    }

    uint64_t add(const NrgTrack& track) {
        const auto at = m_file.size();
        m_file += track.data;
        return at;
    }

    std::string finish(const std::string& chunks) {
        const auto start = m_file.size();
        m_file += chunks + chunk("END!", "");
        m_file += (m_version == 1 ? "NERO" : "NER5") + offset(start);
        return std::move(m_file);
    }

    int version() const { return m_version; }

private:
    int m_version;
    std::string m_file = {};
};

std::string sessionEnd(size_t tracks) {
    return chunk("SINF", big32(static_cast<uint32_t>(tracks)));
}

// Where the first index of a track is on the disc.
std::string cue(const NrgTrack& track, size_t number, int version) {
    std::string bytes = {track.mode == 7 ? '\x01' : '\x41', bcd(number), '\1', '\0'};
    if (version != 1)
        return bytes + big32(track.address);
    const size_t frame = track.address + 150;
    return bytes + std::string{'\0', bcd(frame / 75 / 60), bcd(frame / 75 % 60), bcd(frame % 75)};
}

} // namespace

std::string rawMode1(std::string_view image, size_t subchannel) {
    return wrapped(
        image, [](size_t number) { return sectorHead(number, 1); }, 288 + subchannel);
}

std::string rawMode2(std::string_view image, size_t subchannel) {
    return wrapped(
        image, [](size_t number) { return sectorHead(number, 2) + subheader(); }, 280 + subchannel);
}

std::string bareMode2(std::string_view image) {
    return wrapped(
        image, [](size_t) { return subheader(); }, 280);
}

std::string nrgTrackAtOnce(const std::vector<std::vector<NrgTrack>>& sessions, int version) {
    NrgWriter writer(version);
    std::string chunks;
    for (const auto& session : sessions) {
        std::string tracks;
        for (const auto& track : session) {
            tracks += writer.offset(writer.add(track)) + writer.offset(track.data.size());
            tracks += big32(track.mode) + big32(track.address) + writer.offset(0);
        }
        chunks += chunk(version == 1 ? "ETNF" : "ETN2", tracks) + sessionEnd(session.size());
    }
    return writer.finish(chunks);
}

std::string nrgDiscAtOnce(const std::vector<std::vector<NrgTrack>>& sessions, int version) {
    NrgWriter writer(version);
    std::string chunks;
    size_t number = 1;
    for (const auto& session : sessions) {
        std::string cues;
        std::string tracks =
            std::string(20, '\0') + static_cast<char>(number) + static_cast<char>(number + session.size() - 1);
        for (const auto& track : session) {
            cues += cue(track, number++, version);
            const auto start = writer.add(track);
            tracks +=
                std::string(12, '\0') + big16(track.sectorSize) + static_cast<char>(track.mode) + std::string(3, '\0');
            tracks += writer.offset(start) + writer.offset(start) + writer.offset(start + track.data.size());
        }
        chunks += chunk(version == 1 ? "CUES" : "CUEX", cues) + chunk(version == 1 ? "DAOI" : "DAOX", tracks);
        chunks += sessionEnd(session.size());
    }
    return writer.finish(chunks);
}

} // namespace discaro::test
