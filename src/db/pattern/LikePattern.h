#pragma once

#include "db/pattern/FoldBuffer.h"
#include "db/pattern/LikeSearch.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

// The beginning of a `like` pattern, for a search in an index.
struct LikeShape {
    enum class Rest {
        Nothing,  // the pattern has no wild-card
        Anything, // one or more * and nothing else
        Pattern,
    };
    std::string head;     // folded, up to the first wild-card
    size_t asciiHead = 0; // so many bytes of it are ASCII and not NUL
    Rest rest = Rest::Nothing;
};

LikeShape likeShape(std::string_view pattern);

// A compiled `like` pattern. * stands for any run of characters, the empty one too, ? for one
// character, # for one of the digits 0 to 9; everything else stands for itself, brackets too. Both
// sides are compared in their folded form (base::foldedForComparison), and a character is one of
// that form; a byte that is not UTF-8 counts as one.
//
// A match takes time in proportion to the text; where a part between two * holds ? or #, also to a sixty-fourth of that
// part's length. A text that is too short for the pattern costs nothing. The pattern may come from a user: it may hold
// anything. Not for use by two threads at once.
class LikePattern {
public:
    explicit LikePattern(std::string_view pattern);
    LikePattern(const LikePattern&) = delete;
    LikePattern& operator=(const LikePattern&) = delete;

    // Whether the whole text matches. Allocates nothing for ASCII text once a text of its length
    // has been seen.
    bool matches(std::string_view text);

private:
    // A part of the pattern between two *.
    struct Part {
        std::string_view text;
        bool plain = true; // without ? and #
    };

    void split();
    void choosePrefilter();
    bool matchesFolded(std::string_view text);
    bool matchesParts(std::string_view text);
    size_t findEnd(const Part& part, std::string_view text, size_t from);
    size_t findCore(std::string_view core, std::string_view text, size_t from);

    std::string m_folded;
    // One more than there are runs of *; the first and the last may be empty. Empty until a text is long enough.
    std::vector<Part> m_parts;
    std::string_view m_prefilter; // an ASCII run that any matching text holds; "" when there is none
    size_t m_minimum = 0;         // bytes that a folded text must have
    FoldBuffer m_buffer;
    std::unique_ptr<LikeSearch> m_search; // for the part used last that needed one
    std::string_view m_searched;          // that part
};

} // namespace discaro::db
