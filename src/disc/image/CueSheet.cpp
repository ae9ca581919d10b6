#include "disc/image/CueSheet.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "disc/medium/ShownNames.h"
#include "disc/medium/TrackBytes.h"
#include "disc/system/FileBytes.h"

#include <algorithm>
#include <charconv>
#include <optional>

namespace discaro::disc {

namespace {

constexpr size_t kMaxTracks = 999;
constexpr size_t kMaxSheetSize = 1 << 20;
constexpr uint64_t kAudioStride = 2352;
constexpr uint64_t kWaveHeader = 44;

// Sectors between the end of a session's last track and the first track of the next one: lead-out, lead-in, pregap.
constexpr uint64_t kFirstSessionGap = 6750 + 4500 + 150;
constexpr uint64_t kLaterSessionGap = 2250 + 4500 + 150;

// The next word of a line, without its quotes; cuts it from the line.
std::string_view nextWord(std::string_view& line) {
    const auto first = line.find_first_not_of(" \t\r");
    if (first == std::string_view::npos) {
        line = {};
        return {};
    }
    line.remove_prefix(first);
    const bool quoted = line.front() == '"';
    if (quoted)
        line.remove_prefix(1);
    const auto end = std::min(line.find_first_of(quoted ? "\"" : " \t\r"), line.size());
    const auto word = line.substr(0, end);
    line.remove_prefix(std::min(end + 1, line.size()));
    return word;
}

std::optional<uint64_t> decimal(std::string_view word) {
    uint64_t number = 0;
    const auto result = std::from_chars(word.data(), word.data() + word.size(), number);
    if (result.ec != std::errc() || result.ptr != word.data() + word.size() || number > 99999)
        return std::nullopt;
    return number;
}

// "mm:ss:ff", 75 frames in a second.
std::optional<uint64_t> frames(std::string_view word) {
    const auto first = word.find(':');
    const auto second = word.rfind(':');
    if (first == std::string_view::npos || first == second)
        return std::nullopt;
    const auto minutes = decimal(word.substr(0, first));
    const auto seconds = decimal(word.substr(first + 1, second - first - 1));
    const auto rest = decimal(word.substr(second + 1));
    if (!minutes || !seconds || !rest)
        return std::nullopt;
    return (*minutes * 60 + *seconds) * 75 + *rest;
}

void setMode(CueTrack& track, std::string_view mode) {
    const auto slash = mode.find('/');
    const auto kind = mode.substr(0, slash);
    const auto size = slash == std::string_view::npos ? std::nullopt : decimal(mode.substr(slash + 1));
    track.stride = size.value_or(kAudioStride);
    track.isData = base::equalAscii(kind, "MODE1") || base::equalAscii(kind, "MODE2") || base::equalAscii(kind, "CDI");
    if (track.stride == 2336)
        track.dataOffset = 8;
    else if (track.stride >= 2352)
        track.dataOffset = base::equalAscii(kind, "MODE1") ? 16 : 24;
}

class SheetReader {
public:
    void readLine(std::string_view line) {
        const auto command = nextWord(line);
        if (base::equalAscii(command, "FILE"))
            readFile(line);
        else if (base::equalAscii(command, "TRACK"))
            readTrack(line);
        else if (base::equalAscii(command, "INDEX"))
            readIndex(line);
        else if (base::equalAscii(command, "PREGAP"))
            readGap(line);
        else if (base::equalAscii(command, "REM") && base::equalAscii(nextWord(line), "SESSION"))
            m_session = static_cast<unsigned>(decimal(nextWord(line)).value_or(m_session));
    }

    CueSheet take() { return std::move(m_sheet); }

private:
    void readFile(std::string_view line) {
        const auto name = nextWord(line);
        m_sheet.files.push_back({std::string(name), std::string(nextWord(line))});
        m_inTrack = false;
    }

    void readTrack(std::string_view line) {
        m_inTrack = !m_sheet.files.empty() && m_sheet.tracks.size() < kMaxTracks;
        if (!m_inTrack)
            return;
        nextWord(line);
        CueTrack track;
        track.file = m_sheet.files.size() - 1;
        track.session = m_session;
        setMode(track, nextWord(line));
        m_sheet.tracks.push_back(track);
        m_hasBegin = false;
    }

    void readIndex(std::string_view line) {
        const auto number = decimal(nextWord(line));
        const auto frame = frames(nextWord(line));
        if (!m_inTrack || !number || !frame || *number > 1)
            return;
        auto& track = m_sheet.tracks.back();
        if (!m_hasBegin)
            track.begin = *frame;
        track.start = std::max(track.begin, *frame);
        m_hasBegin = true;
    }

    void readGap(std::string_view line) {
        if (m_inTrack)
            m_sheet.tracks.back().gap = frames(nextWord(line)).value_or(0);
    }

    CueSheet m_sheet;
    unsigned m_session = 1;
    bool m_inTrack = false;
    bool m_hasBegin = false;
};

bool isRegular(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(path, ignored);
}

// A sheet written elsewhere may name its file with another case or another folder; the file is beside the sheet.
std::filesystem::path findBeside(const std::filesystem::path& sheet, std::string_view written) {
    const auto folder = sheet.has_parent_path() ? sheet.parent_path() : std::filesystem::path(".");
    const auto name = written.substr(written.find_last_of("/\\") + 1);
    if (!name.empty() && isRegular(folder / name))
        return folder / name;
    const auto folded = base::foldedForComparison(base::decodeUnlabelled(name));
    std::error_code error;
    for (std::filesystem::directory_iterator it(folder, error), end; !error && it != end; it.increment(error))
        if (base::foldedForComparison(it->path().filename().string()) == folded && isRegular(it->path()))
            return it->path();
    auto renamed = std::filesystem::path(sheet).replace_extension(".bin");
    if (isRegular(renamed))
        return renamed;
    throw base::RuntimeError(base::ErrorNumber::PathMissing, shownPath(written));
}

// Gives the tracks of a sheet their addresses on the disc and their bytes in the files.
class DiscLayout {
public:
    DiscLayout(const CueSheet& sheet, const std::filesystem::path& path)
        : m_sheet(sheet)
        , m_path(path) {}

    DiscData lay() {
        for (size_t i = 0; i < m_sheet.tracks.size(); ++i)
            place(i);
        if (m_tracks.empty())
            throw base::RuntimeError(base::ErrorNumber::FileSystemUnsupported, "the disc has no data track");
        std::ranges::reverse(m_sessions);
        return {std::make_shared<TrackBytes>(std::move(m_tracks)), std::move(m_sessions)};
    }

private:
    void place(size_t index) {
        const auto& track = m_sheet.tracks[index];
        if (index == 0 || track.file != m_sheet.tracks[index - 1].file)
            enterFile(track);
        if (index > 0)
            m_address += track.gap + sessionGap(m_sheet.tracks[index - 1].session, track.session);
        const auto length = lengthOf(index);
        // The first track begins at address 0 with what follows its pregap.
        const uint64_t skipped = index == 0 && track.isData ? std::min(track.start - track.begin, length) : 0;
        if (track.isData)
            addData(track, skipped, length);
        m_address += length - skipped;
        m_byte += length * track.stride;
    }

    void enterFile(const CueTrack& track) {
        const auto& file = m_sheet.files[track.file];
        m_file = std::make_shared<FileBytes>(findBeside(m_path, file.name));
        m_byte = track.begin * track.stride;
        m_end = m_file->size();
        if (base::equalAscii(file.type, "WAVE"))
            m_end -= std::min(m_end, kWaveHeader);
    }

    static uint64_t sessionGap(unsigned before, unsigned now) {
        if (before == now)
            return 0;
        return before == 1 ? kFirstSessionGap : kLaterSessionGap;
    }

    // In frames, up to the next track of the same file or to the file's end.
    uint64_t lengthOf(size_t index) const {
        const auto& track = m_sheet.tracks[index];
        if (index + 1 < m_sheet.tracks.size() && m_sheet.tracks[index + 1].file == track.file)
            return std::max(m_sheet.tracks[index + 1].begin, track.begin) - track.begin;
        return m_byte < m_end && track.stride > 0 ? (m_end - m_byte) / track.stride : 0;
    }

    void addData(const CueTrack& track, uint64_t skipped, uint64_t length) {
        m_tracks.push_back({.file = m_file,
                            .fileOffset = m_byte + skipped * track.stride,
                            .stride = track.stride,
                            .dataOffset = track.dataOffset,
                            .firstSector = m_address,
                            .sectorCount = length - skipped});
        if (m_sessions.empty() || m_lastSession != track.session)
            m_sessions.push_back(m_address + (track.start - track.begin) - skipped);
        m_lastSession = track.session;
    }

    const CueSheet& m_sheet;
    const std::filesystem::path& m_path;
    std::shared_ptr<const ByteSource> m_file;
    uint64_t m_byte = 0;
    uint64_t m_end = 0;
    uint64_t m_address = 0;
    unsigned m_lastSession = 0;
    std::vector<Track> m_tracks;
    std::vector<uint64_t> m_sessions;
};

std::string readText(const std::filesystem::path& path) {
    const FileBytes file(path);
    std::string text(std::min<uint64_t>(file.size(), kMaxSheetSize), '\0');
    text.resize(file.read(0, std::as_writable_bytes(std::span(text))));
    return text;
}

} // namespace

CueSheet parseCueSheet(std::string_view text) {
    SheetReader reader;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of("\r\n"), text.size());
        reader.readLine(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return reader.take();
}

DiscData openCueSheet(const std::filesystem::path& path) {
    const auto sheet = parseCueSheet(readText(path));
    if (sheet.tracks.empty())
        throw base::RuntimeError(base::ErrorNumber::FileSystemUnknown);
    return DiscLayout(sheet, path).lay();
}

} // namespace discaro::disc
