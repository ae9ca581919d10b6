#include "db/pattern/LikePattern.h"

#include "base/Text.h"
#include "base/Utf8Step.h"

#include <algorithm>
#include <cstring>

namespace discaro::db {

namespace {

constexpr std::string_view kWildcards = "*?#";
constexpr size_t kNone = std::string_view::npos;

bool isAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

size_t lengthBefore(std::string_view text, size_t end) {
    for (size_t length = 2; length <= 4 && length <= end; ++length)
        if (base::lengthAt(text, end - length) == length)
            return length;
    return 1;
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

// Where the part ends in the text when it begins at a place; kNone when it does not match there.
size_t matchForward(std::string_view part, std::string_view text, size_t at) {
    for (const char c : part) {
        if (at >= text.size())
            return kNone;
        if (c == '?') {
            at += base::lengthAt(text, at);
            continue;
        }
        if (c == '#' ? !isDigit(text[at]) : c != text[at])
            return kNone;
        ++at;
    }
    return at;
}

// Where the part begins when it ends with the text; kNone when that is before `from` or it does not
// match.
size_t matchBackward(std::string_view part, std::string_view text, size_t from) {
    size_t end = text.size();
    for (size_t left = part.size(); left > 0; --left) {
        const char c = part[left - 1];
        if (end <= from)
            return kNone;
        const size_t length = c == '?' ? lengthBefore(text, end) : 1;
        if (end - from < length)
            return kNone;
        end -= length;
        if (c != '?' && (c == '#' ? !isDigit(text[end]) : c != text[end]))
            return kNone;
    }
    return end;
}

// Where the first occurrence from a place on begins. memmem takes time in proportion to the text
// whatever it holds, but prepares for that longer than a name takes to search.
size_t findPlain(std::string_view part, std::string_view text, size_t from) {
    constexpr size_t kShort = 512;
    if (part.size() == 1)
        return text.find(part[0], from);
    if (text.size() - from <= kShort)
        return text.find(part, from);
    const void* found = memmem(text.data() + from, text.size() - from, part.data(), part.size());
    return found == nullptr ? kNone : static_cast<size_t>(static_cast<const char*>(found) - text.data());
}

size_t findPlainEnd(std::string_view part, std::string_view text, size_t from) {
    const size_t found = findPlain(part, text, from);
    return found == kNone ? kNone : found + part.size();
}

// The place so many characters further on; kNone when the text has not as many.
size_t skip(std::string_view text, size_t at, size_t characters) {
    for (; characters > 0; --characters) {
        if (at >= text.size())
            return kNone;
        at += base::lengthAt(text, at);
    }
    return at;
}

} // namespace

LikeShape likeShape(std::string_view pattern) {
    const std::string folded = base::foldedForComparison(pattern);
    LikeShape shape;
    const size_t wildcard = folded.find_first_of(kWildcards);
    shape.head = folded.substr(0, wildcard);
    if (wildcard != std::string::npos)
        shape.rest = folded.find_first_not_of('*', wildcard) == std::string::npos ? LikeShape::Rest::Anything
                                                                                  : LikeShape::Rest::Pattern;
    while (shape.asciiHead < shape.head.size() && isAscii(shape.head[shape.asciiHead]) &&
           shape.head[shape.asciiHead] != '\0')
        ++shape.asciiHead;
    return shape;
}

LikePattern::LikePattern(std::string_view pattern)
    : m_folded(base::foldedForComparison(pattern))
    , m_minimum(m_folded.size() - static_cast<size_t>(std::ranges::count(m_folded, '*'))) {
    choosePrefilter();
}

void LikePattern::split() {
    const std::string_view all = m_folded;
    size_t begin = 0;
    while (true) {
        const size_t star = all.find('*', begin);
        const std::string_view text = all.substr(begin, star == kNone ? kNone : star - begin);
        const bool inner = !m_parts.empty() && star != kNone;
        if (!inner || !text.empty())
            m_parts.push_back({text, text.find_first_of(kWildcards) == kNone});
        if (star == kNone)
            return;
        begin = star + 1;
    }
}

void LikePattern::choosePrefilter() {
    const std::string_view all = m_folded;
    for (size_t begin = 0; begin < all.size();) {
        size_t end = begin;
        while (end < all.size() && isAscii(all[end]) && kWildcards.find(all[end]) == kNone)
            ++end;
        if (end - begin > m_prefilter.size())
            m_prefilter = all.substr(begin, end - begin);
        begin = end + 1;
    }
}

bool LikePattern::matches(std::string_view text) {
    // No text grows more when it is folded.
    constexpr size_t kMostGrowth = 6;
    if (text.size() < m_minimum / kMostGrowth)
        return false;
    if (m_buffer.lowerAscii(text))
        return matchesFolded(m_buffer.view());
    // Folding changes no ASCII text and makes none, so a run that is missing here stays missing.
    if (!m_prefilter.empty() && findPlain(m_prefilter, m_buffer.view(), 0) == kNone)
        return false;
    m_buffer.fold(text);
    return matchesFolded(m_buffer.view());
}

bool LikePattern::matchesFolded(std::string_view text) {
    if (text.size() < m_minimum)
        return false;
    if (m_parts.empty())
        split();
    if (m_parts.size() > 1)
        return matchesParts(text);
    if (m_parts[0].plain)
        return text == m_parts[0].text;
    return matchForward(m_parts[0].text, text, 0) == text.size();
}

// Where the first occurrence from a place on ends. Question marks at both ends of the part only count characters.
size_t LikePattern::findEnd(const Part& part, std::string_view text, size_t from) {
    if (part.plain)
        return findPlainEnd(part.text, text, from);
    const size_t first = part.text.find_first_not_of('?');
    if (first == kNone)
        return skip(text, from, part.text.size());
    const size_t last = part.text.find_last_not_of('?');
    size_t at = skip(text, from, first);
    if (at != kNone)
        at = findCore(part.text.substr(first, last - first + 1), text, at);
    return at == kNone ? kNone : skip(text, at, part.text.size() - last - 1);
}

size_t LikePattern::findCore(std::string_view core, std::string_view text, size_t from) {
    // For short texts a search costs more to prepare than it saves.
    constexpr size_t kMostTried = 4096;
    if (core.find_first_of("?#") == kNone)
        return findPlainEnd(core, text, from);
    if ((text.size() - from) * core.size() <= kMostTried) {
        for (size_t at = from; at < text.size(); at += base::lengthAt(text, at))
            if (const size_t end = matchForward(core, text, at); end != kNone)
                return end;
        return kNone;
    }
    if (m_search == nullptr || m_searched.data() != core.data()) {
        m_search = std::make_unique<LikeSearch>(core);
        m_searched = core;
    }
    return m_search->findEnd(text, from);
}

// The leftmost place for each part leaves the most room for the parts behind it, so no other place
// need be tried.
bool LikePattern::matchesParts(std::string_view text) {
    size_t at = matchForward(m_parts.front().text, text, 0);
    if (at == kNone || matchBackward(m_parts.back().text, text, at) == kNone)
        return false;
    for (size_t part = 1; part + 1 < m_parts.size(); ++part) {
        at = findEnd(m_parts[part], text, at);
        if (at == kNone)
            return false;
    }
    return matchBackward(m_parts.back().text, text, at) != kNone;
}

} // namespace discaro::db
