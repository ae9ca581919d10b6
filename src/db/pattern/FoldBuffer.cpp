#include "db/pattern/FoldBuffer.h"

#include "base/Text.h"
#include "base/Utf8Step.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace discaro::db {

namespace {

// Work goes by eight bytes at a time, so the memory is a little longer than the text.
constexpr size_t kBlock = sizeof(uint64_t);
constexpr uint64_t kEach = 0x0101010101010101;
constexpr uint64_t kHighBits = 0x80 * kEach;

// The block with A to Z made small: in each byte, adding to the seven low bits carries into the
// high bit just from the wanted letter on.
uint64_t lowerBlock(uint64_t block) {
    const uint64_t low = block & ~kHighBits;
    const uint64_t fromA = low + (0x80 - 'A') * kEach;
    const uint64_t behindZ = low + (0x7F - 'Z') * kEach;
    const uint64_t capitals = (fromA ^ behindZ) & kHighBits & ~block;
    return block | (capitals >> 2);
}

struct Character {
    char32_t codePoint = 0;
    size_t length = 0; // bytes; 0 for what is not a character of two or three bytes
};

Character characterAt(std::string_view text, size_t at) {
    const auto lead = static_cast<unsigned char>(text[at]);
    const size_t length = (lead & 0xE0) == 0xC0 ? 2 : (lead & 0xF0) == 0xE0 ? 3 : 0;
    if (length == 0 || at + length > text.size())
        return {};
    char32_t codePoint = lead & (0xFFU >> (length + 1));
    for (size_t next = at + 1; next < at + length; ++next) {
        if (!base::isContinuation(text[next]))
            return {};
        codePoint = codePoint << 6 | (static_cast<unsigned char>(text[next]) & 0x3F);
    }
    const bool shortest = codePoint >= (length == 2 ? 0x80U : 0x800U);
    return shortest ? Character{codePoint, length} : Character{};
}

void encode(char32_t codePoint, size_t length, char* out) {
    for (size_t at = length; at > 1; --at, codePoint >>= 6)
        out[at - 1] = static_cast<char>(0x80 | (codePoint & 0x3F));
    out[0] = static_cast<char>((length == 2 ? 0xC0 : 0xE0) | codePoint);
}

bool isCombining(char32_t codePoint) {
    return (codePoint >= 0x300 && codePoint < 0x370) || (codePoint >= 0x483 && codePoint < 0x48A);
}

char16_t foldedLetter(char32_t codePoint) {
    std::array<char, 3> bytes{};
    const size_t length = codePoint < 0x800 ? 2 : 3;
    encode(codePoint, length, bytes.data());
    const std::string folded = base::foldedForComparison({bytes.data(), length});
    const Character letter = characterAt(folded, 0);
    const bool alike = folded.size() == length && letter.length == length;
    return alike && !isCombining(codePoint) ? static_cast<char16_t>(letter.codePoint) : 0;
}

// Letters that fold one by one, each to a letter with as many bytes in UTF-8; 0 for all others,
// marks that combine with the character before them among these.
template <char32_t First, char32_t Behind>
std::array<char16_t, Behind - First> makeLetters() {
    std::array<char16_t, Behind - First> letters{};
    for (char32_t codePoint = First; codePoint < Behind; ++codePoint)
        letters[codePoint - First] = foldedLetter(codePoint);
    return letters;
}

// Characters that fold to themselves and never compose with one before them: dashes and quotation
// marks, kana and their signs, Han, whole Hangul syllables.
bool foldsToItself(char32_t codePoint) {
    return (codePoint >= 0x2010 && codePoint <= 0x2027) || (codePoint >= 0x3000 && codePoint <= 0x3029) ||
           (codePoint >= 0x3041 && codePoint <= 0x3096) || (codePoint >= 0x309B && codePoint <= 0x30FF) ||
           (codePoint >= 0x4E00 && codePoint <= 0x9FFF) || (codePoint >= 0xAC00 && codePoint <= 0xD7A3);
}

// The folded form of a character that folds by itself, with as many bytes; 0 for all others.
char32_t foldedAlone(char32_t codePoint) {
    // From Latin with accents to Armenian; the Latin letters with two accents.
    static const auto kLetters = makeLetters<0x80, 0x590>();
    static const auto kAccentedLetters = makeLetters<0x1E00, 0x1F00>();
    if (codePoint >= 0x80 && codePoint < 0x590)
        return kLetters[codePoint - 0x80];
    if (codePoint >= 0x1E00 && codePoint < 0x1F00)
        return kAccentedLetters[codePoint - 0x1E00];
    return foldsToItself(codePoint) ? codePoint : 0;
}

// Writes the folded form of the character at a place and returns its bytes; 0 when it is not of the
// simple kind.
size_t foldCharacter(std::string_view text, size_t at, char* out) {
    const char c = text[at];
    if (static_cast<unsigned char>(c) < 0x80) {
        *out = static_cast<char>(c >= 'A' && c <= 'Z' ? c | 0x20 : c);
        return 1;
    }
    const Character character = characterAt(text, at);
    const char32_t folded = character.length == 0 ? 0 : foldedAlone(character.codePoint);
    if (folded == 0)
        return 0;
    encode(folded, character.length, out);
    return character.length;
}

} // namespace

char* FoldBuffer::reserve(size_t size) {
    if (size + kBlock > m_capacity) {
        m_capacity = 2 * size + 256;
        m_memory = std::make_unique<char[]>(m_capacity);
    }
    return m_memory.get();
}

bool FoldBuffer::lowerAscii(std::string_view text) {
    char* out = reserve(text.size());
    uint64_t seen = 0;
    const auto take = [&](size_t at, size_t size) {
        uint64_t block = 0;
        std::memcpy(&block, text.data() + at, size);
        seen |= block;
        block = lowerBlock(block);
        std::memcpy(out + at, &block, kBlock);
    };
    size_t at = 0;
    for (; at + kBlock <= text.size(); at += kBlock)
        take(at, kBlock);
    // The rest together with bytes in front of it, where there are any: a whole block is read faster than a part.
    if (at > 0)
        take(text.size() - kBlock, kBlock);
    else if (!text.empty())
        take(0, text.size());
    m_view = {out, text.size()};
    return (seen & kHighBits) == 0;
}

void FoldBuffer::fold(std::string_view text) {
    if (foldSimple(text))
        return;
    m_composed = base::foldedForComparison(text);
    m_view = m_composed;
}

bool FoldBuffer::foldSimple(std::string_view text) {
    char* out = reserve(text.size());
    for (size_t at = 0; at < text.size();) {
        const size_t length = foldCharacter(text, at, out + at);
        if (length == 0)
            return false;
        at += length;
    }
    m_view = {out, text.size()};
    return true;
}

} // namespace discaro::db
