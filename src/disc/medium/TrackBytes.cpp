#include "disc/medium/TrackBytes.h"

#include "base/RuntimeError.h"
#include "base/Sentence.h"

#include <algorithm>
#include <cstring>
#include <string>

namespace discaro::disc {

namespace {

constexpr uint64_t kLargestStride = 2448;
constexpr uint64_t kSectorsAtOnce = 16;

uint64_t sectorsInFile(const Track& track) {
    const uint64_t needed = track.dataOffset + kSectorSize;
    if (track.stride < needed || track.stride > kLargestStride || track.file->size() < track.fileOffset ||
        track.file->size() - track.fileOffset < needed)
        return 0;
    return (track.file->size() - track.fileOffset - needed) / track.stride + 1;
}

uint64_t endOf(const Track& track) {
    return track.firstSector + track.sectorCount;
}

// Part of a track's user data, from a byte of one sector to at most the end of the track.
size_t readFrom(const Track& track, uint64_t offset, std::span<std::byte> buffer) {
    uint64_t sector = offset / kSectorSize - track.firstSector;
    uint64_t within = offset % kSectorSize;
    std::byte raw[kLargestStride * kSectorsAtOnce];
    size_t done = 0;
    while (done < buffer.size() && sector < track.sectorCount) {
        const uint64_t wanted = (buffer.size() - done + within + kSectorSize - 1) / kSectorSize;
        const uint64_t count = std::min({wanted, track.sectorCount - sector, kSectorsAtOnce});
        const auto piece = std::span(raw).first(count * track.stride);
        const size_t got = track.file->read(track.fileOffset + sector * track.stride, piece);
        for (uint64_t i = 0; i < count && done < buffer.size(); ++i, ++sector, within = 0) {
            if (got < i * track.stride + track.dataOffset + kSectorSize)
                throw base::RuntimeError(base::ErrorNumber::ReadFailure, "the image file is cut short");
            const auto length = std::min<size_t>(kSectorSize - within, buffer.size() - done);
            std::memcpy(buffer.data() + done, raw + i * track.stride + track.dataOffset + within, length);
            done += length;
        }
    }
    return done;
}

} // namespace

TrackBytes::TrackBytes(std::vector<Track> tracks) {
    std::ranges::stable_sort(tracks, {}, &Track::firstSector);
    for (auto& track : tracks) {
        track.sectorCount = std::min(track.sectorCount, sectorsInFile(track));
        const bool overlaps = !m_tracks.empty() && track.firstSector < endOf(m_tracks.back());
        if (track.sectorCount > 0 && !overlaps)
            m_tracks.push_back(std::move(track));
    }
}

uint64_t TrackBytes::size() const {
    return m_tracks.empty() ? 0 : endOf(m_tracks.back()) * kSectorSize;
}

const Track& TrackBytes::trackOf(uint64_t sector) const {
    const auto behind = std::ranges::upper_bound(m_tracks, sector, {}, &Track::firstSector);
    if (behind == m_tracks.begin() || sector >= endOf(*std::prev(behind)))
        throw base::RuntimeError(base::ErrorNumber::ReadFailure,
                                 base::filledIn("sector %1 is not in the image", {std::to_string(sector)}));
    return *std::prev(behind);
}

size_t TrackBytes::read(uint64_t offset, std::span<std::byte> buffer) const {
    size_t done = 0;
    while (done < buffer.size() && offset + done < size()) {
        const auto& track = trackOf((offset + done) / kSectorSize);
        done += readFrom(track, offset + done, buffer.subspan(done));
    }
    return done;
}

} // namespace discaro::disc
