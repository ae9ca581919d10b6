#include "disc/iso/RockRidge.h"

#include "disc/medium/DiscTime.h"
#include "disc/medium/UnlessGone.h"

#include <algorithm>
#include <string_view>

namespace discaro::disc {

namespace {

constexpr size_t kEntryHead = 4; // two letters, length, version
constexpr size_t kXaLength = 14;
constexpr int kMaxContinuations = 16;
constexpr uint64_t kMaxContinuationLength = 2048;
constexpr size_t kMaxName = 1024;

constexpr uint32_t kTypeMask = 0170000;
constexpr uint32_t kDirectoryType = 0040000;
constexpr uint32_t kLinkType = 0120000;

void readName(Bytes entry, RockRidgeFacts& facts, bool& goesOn) {
    constexpr unsigned kContinues = 1;
    constexpr unsigned kPlaceNames = 2 | 4; // "." and "..", which no ordinary record has
    constexpr size_t kText = 5;
    const unsigned flags = byteAt(entry, kEntryHead);
    if ((flags & kPlaceNames) != 0 || (!facts.name.empty() && !goesOn))
        return;
    const auto text = textOf(part(entry, kText));
    facts.name.append(text.substr(0, kMaxName - std::min(kMaxName, facts.name.size())));
    goesOn = (flags & kContinues) != 0;
}

// The stamps that the flags announce stand one behind the other, each in the short or the long form.
void readStamps(Bytes entry, RockRidgeFacts& facts) {
    constexpr unsigned kCreation = 1;
    constexpr unsigned kModification = 2;
    constexpr unsigned kLongForm = 128;
    const unsigned flags = byteAt(entry, kEntryHead);
    if ((flags & kModification) == 0)
        return;
    const size_t length = (flags & kLongForm) != 0 ? 17 : 7;
    const size_t at = kEntryHead + 1 + ((flags & kCreation) != 0 ? length : 0);
    const auto stamp = part(entry, at, length);
    if (stamp.size() == length)
        facts.modified = (flags & kLongForm) != 0 ? digitsTime(stamp) : recordTime(stamp);
}

void readEntry(std::string_view name, Bytes entry, RockRidgeFacts& facts) {
    if (name == "PX")
        facts.mode = littleEndian<uint32_t>(entry, kEntryHead);
    else if (name == "TF")
        readStamps(entry, facts);
    else if (name == "CL")
        facts.relocatedTo = littleEndian<uint32_t>(entry, kEntryHead);
    else if (name == "RE")
        facts.isRelocated = true;
    else if (name == "SL")
        facts.hasLinkTarget = true;
}

bool isMark(Bytes area) {
    return holdsText(area, 0, "SP") && byteAt(area, 2) >= 7 && byteAt(area, 4) == 0xBE && byteAt(area, 5) == 0xEF;
}

} // namespace

bool RockRidgeFacts::isDirectory() const {
    return relocatedTo.has_value() || (mode && (*mode & kTypeMask) == kDirectoryType);
}

bool RockRidgeFacts::isSymbolicLink() const {
    return mode ? (*mode & kTypeMask) == kLinkType : hasLinkTarget;
}

std::optional<size_t> systemUseSkip(Bytes rootSystemUse) {
    constexpr size_t kSkip = 6;
    for (const size_t at : {size_t{0}, kXaLength})
        if (isMark(part(rootSystemUse, at)))
            return byteAt(rootSystemUse, at + kSkip);
    return std::nullopt;
}

RockRidgeReader::RockRidgeReader(const ByteSource& medium, uint64_t blockSize, size_t skip, uint64_t allowance)
    : m_medium(medium)
    , m_blockSize(blockSize)
    , m_skip(skip)
    , m_allowance(allowance) {}

RockRidgeFacts RockRidgeReader::read(Bytes systemUse) {
    RockRidgeFacts facts;
    m_nameGoesOn = false;
    auto next = readArea(part(systemUse, m_skip), facts);
    std::vector<std::byte> bytes;
    for (int i = 0; next && next->length > 0 && i < kMaxContinuations && fetch(*next, bytes); ++i)
        next = readArea(bytes, facts);
    return facts;
}

// Returns where the entries go on.
std::optional<RockRidgeReader::Continuation> RockRidgeReader::readArea(Bytes area, RockRidgeFacts& facts) {
    std::optional<Continuation> next;
    while (area.size() >= kEntryHead) {
        const size_t length = byteAt(area, 2);
        if (length < kEntryHead || length > area.size())
            break;
        const auto name = textOf(area.first(2));
        const auto entry = area.first(length);
        if (name == "ST")
            break;
        if (name == "CE")
            next = Continuation{littleEndian<uint32_t>(entry, 4) * m_blockSize + littleEndian<uint32_t>(entry, 12),
                                littleEndian<uint32_t>(entry, 20)};
        else if (name == "NM")
            readName(entry, facts, m_nameGoesOn);
        else
            readEntry(name, entry, facts);
        area = area.subspan(length);
    }
    return next;
}

bool RockRidgeReader::fetch(const Continuation& place, std::vector<std::byte>& bytes) {
    bytes.resize(std::min(place.length, kMaxContinuationLength));
    const bool allowed = bytes.size() <= m_allowance;
    bool whole = false;
    if (allowed) {
        m_allowance -= bytes.size();
        skipErrorsUnlessGone([&] { whole = m_medium.read(place.offset, bytes) == bytes.size(); });
    }
    m_incomplete = m_incomplete || !whole;
    return whole;
}

} // namespace discaro::disc
