#include "disc/executable/VersionResourceBlock.h"

#include "base/Text.h"

#include <algorithm>
#include <initializer_list>

namespace discaro::disc {

namespace {

constexpr size_t kLongestKey = 256; // characters
constexpr size_t kShortestKey = 2;
constexpr size_t kAlignment = 4;
constexpr std::string_view kFixedInfoMark = "\xBD\x04\xEF\xFE"; // the fixed part of the root's value begins so
constexpr size_t kFixedInfoLength = 52;

size_t aligned(size_t start, size_t offset) {
    return start + (offset - start + kAlignment - 1) / kAlignment * kAlignment;
}

bool isControl(char c) {
    return static_cast<unsigned char>(c) < ' ';
}

} // namespace

// Behind the two lengths the 16-bit form has the key, the other one its kind of value: 0 or 1.
VersionBlockTree::VersionBlockTree(std::string_view resource)
    : m_resource(resource)
    , m_wide(resource.size() <= 4 || static_cast<unsigned char>(resource[4]) < ' ') {}

std::optional<VersionBlock> VersionBlockTree::root() {
    auto block = blockAt(0, Trust::Loose);
    if (block && block->end < kFixedInfoLength)
        block->end = m_resource.size();
    return block;
}

std::vector<VersionBlock> VersionBlockTree::children(const VersionBlock& parent) {
    std::vector<VersionBlock> result;
    const size_t end = std::min(parent.end, m_resource.size());
    for (auto child = firstChild(parent); child && child->start < end; child = next(*child)) {
        if (++m_blocks > kBlockLimit)
            break;
        result.push_back(*child);
    }
    return result;
}

std::string_view VersionBlockTree::text(const VersionBlock& block) const {
    const size_t start = valueStart(block);
    const size_t end = textEnd(block, start);
    return start < end ? m_resource.substr(start, terminator(start, end) - start) : std::string_view{};
}

std::string_view VersionBlockTree::bytes(const VersionBlock& block, size_t length) const {
    const size_t start = valueStart(block);
    return start < m_resource.size() ? m_resource.substr(start, length) : std::string_view{};
}

// A 16-bit number; 0 where there is none.
size_t VersionBlockTree::word(size_t offset) const {
    if (offset >= m_resource.size() || m_resource.size() - offset < 2)
        return 0;
    const auto low = static_cast<unsigned char>(m_resource[offset]);
    const auto high = static_cast<unsigned char>(m_resource[offset + 1]);
    return static_cast<size_t>(low | high << 8);
}

// Where the first NUL character is, or the end when there is none. The end is not behind the
// resource's.
size_t VersionBlockTree::terminator(size_t from, size_t to) const {
    size_t at = from;
    while (at + unit() <= to && !isZero(at, at + unit()))
        at += unit();
    return at + unit() <= to ? at : to;
}

bool VersionBlockTree::isZero(size_t from, size_t to) const {
    return std::ranges::all_of(m_resource.substr(from, to - from), [](char c) { return c == '\0'; });
}

// Values are aligned. Only where the bytes that ought to be padding are not, and the value is seen
// to stand directly behind the key (by its mark, or because the block ends so), there is no
// padding.
size_t VersionBlockTree::valueStart(const VersionBlock& block) const {
    const size_t usual = aligned(block.start, block.keyEnd);
    const size_t paddingEnd = std::min(usual, m_resource.size());
    if (block.keyEnd >= paddingEnd || isZero(block.keyEnd, paddingEnd))
        return usual;
    const bool standsThere = m_resource.substr(block.keyEnd).starts_with(kFixedInfoMark) ||
                             block.keyEnd + block.declaredLength == block.end ||
                             block.keyEnd + block.declaredLength * unit() == block.end;
    return standsThere ? block.keyEnd : usual;
}

// In bytes, as the platform's reader counts.
size_t VersionBlockTree::valueLength(const VersionBlock& block) const {
    return block.declaredLength * (block.isText ? unit() : 1);
}

// A text ends with its block. Only where it has no terminator there, it goes on for the length that
// is told for it: when that brings the terminator, or when the length can't be one counted in
// bytes.
size_t VersionBlockTree::textEnd(const VersionBlock& block, size_t start) const {
    const size_t end = std::max(start, std::min(block.end, m_resource.size()));
    const size_t room = end - start;
    const size_t told = std::min(start + block.declaredLength * unit(), m_resource.size());
    if (terminator(start, end) < end || told <= end)
        return end;
    const bool bringsTerminator = terminator(start, told) + unit() == told;
    const bool countedInBytes = block.declaredLength <= room && room < block.declaredLength + kAlignment;
    return countedInBytes && !bringsTerminator ? end : told;
}

// Whether the header makes sense, so that a place beside a block is not taken for one.
bool VersionBlockTree::isLikely(const VersionBlock& block) const {
    const bool kindIsKnown = !m_wide || word(block.start + 4) <= 1;
    const bool keyIsWord = block.key.size() >= kShortestKey && std::ranges::none_of(block.key, isControl);
    return kindIsKnown && keyIsWord && block.end >= block.keyEnd && block.declaredLength <= block.end - block.start &&
           block.end <= aligned(0, m_resource.size());
}

std::optional<VersionBlock> VersionBlockTree::blockAt(size_t offset, Trust trust) const {
    const size_t length = word(offset);
    const size_t keyStart = offset + headerLength();
    if (length <= headerLength() || keyStart >= m_resource.size())
        return std::nullopt;
    const size_t keyLimit = std::min(m_resource.size(), keyStart + (kLongestKey + 1) * unit());
    const size_t keyEnd = terminator(keyStart, keyLimit);
    if (keyEnd == keyLimit || keyEnd == keyStart)
        return std::nullopt;
    const auto key = m_resource.substr(keyStart, keyEnd - keyStart);
    VersionBlock block{.key = m_wide ? base::decodeUtf16Le(key) : std::string(key),
                       .start = offset,
                       .end = offset + length,
                       .keyEnd = keyEnd + unit(),
                       .declaredLength = word(offset + 2),
                       .isText = m_wide && word(offset + 4) != 0};
    if (trust == Trust::Strict && !isLikely(block))
        return std::nullopt;
    return block;
}

// The block at the first place that looks like one; else what the platform's reader would take,
// which is the first.
std::optional<VersionBlock> VersionBlockTree::firstBlock(std::initializer_list<size_t> places) {
    for (const size_t place : places) {
        if (auto block = blockAt(place, Trust::Strict))
            return block;
    }
    return blockAt(*places.begin(), Trust::Loose);
}

// Children stand behind the value, aligned. Some compilers told a wrong length for it, or a length
// where there is no value, or left the padding out.
std::optional<VersionBlock> VersionBlockTree::firstChild(const VersionBlock& parent) {
    const size_t value = valueStart(parent);
    const size_t behind = value + valueLength(parent);
    const size_t usual = aligned(parent.start, behind);
    const size_t fixedEnd = value + kFixedInfoLength;
    if (bytes(parent, kFixedInfoMark.size()) == kFixedInfoMark)
        return firstBlock({usual, behind, aligned(parent.start, fixedEnd), fixedEnd});
    return firstBlock({usual, behind, value, parent.keyEnd});
}

// Some compilers left the padding between blocks out, or did not count the padding inside them.
std::optional<VersionBlock> VersionBlockTree::next(const VersionBlock& block) {
    const size_t usual = aligned(block.start, block.end);
    const size_t behindValue = aligned(block.start, valueStart(block) + valueLength(block));
    if (behindValue <= block.end)
        return firstBlock({usual, block.end});
    return firstBlock({usual, block.end, behindValue});
}

} // namespace discaro::disc
