#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace discaro::db {

enum class Symbol : uint8_t {
    End,
    Word,      // letters, digits and underscores, not beginning with a digit
    Bracketed, // [name]
    Text,      // '...' or "..."
    Number,
    Comma,
    Dot,
    Star,
    LeftParenthesis,
    RightParenthesis,
    Semicolon,
    Plus,
    Minus,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
};

enum class Keyword : uint8_t {
    None,
    And,
    As,
    Asc,
    Between,
    By,
    Delete,
    Desc,
    False,
    From,
    In,
    Is,
    Like,
    Not,
    Null,
    Or,
    Order,
    Select,
    True,
    Where,
};

struct Token {
    Symbol symbol = Symbol::End;
    Keyword keyword = Keyword::None; // of a Word
    std::string_view text;           // without brackets or quotes; doubled quotes still doubled
    size_t begin = 0;                // places in the source, delimiters included
    size_t end = 0;
};

// Cuts a text of the dialect into tokens, one at a time. Throws RuntimeError SyntaxError on a
// character that begins no token and on a bracket or quote left open. The text must outlive the
// tokenizer and its tokens.
class Tokenizer {
public:
    explicit Tokenizer(std::string_view source);

    const Token& current() const { return m_current; }
    void advance();

    bool is(Symbol symbol) const { return m_current.symbol == symbol; }
    bool is(Keyword keyword) const { return m_current.keyword == keyword; }

    // Steps over the current token when it is the one named.
    bool take(Symbol symbol);
    bool take(Keyword keyword);
    // The same, but anything else is a syntax error.
    void expect(Symbol symbol);
    void expect(Keyword keyword);

    // Steps over a name, bracketed or a word that is no keyword; anything else is a syntax error.
    std::string_view takeName();

    // Steps over an optional semicolon; anything behind it is a syntax error.
    void expectEnd();

    // The file name that follows the current token, bare, quoted or bracketed, and steps over it.
    std::string takeFileName();

    std::string_view source() const { return m_source; }

    // Throws SyntaxError, with the text from the current token on as the detail.
    [[noreturn]] void fail() const;

private:
    void readDelimited(Symbol symbol, char close);
    void readOperator();
    void finish(Symbol symbol, size_t end);
    char at(size_t place) const { return place < m_source.size() ? m_source[place] : '\0'; }

    std::string_view m_source;
    Token m_current;
};

// The length of the unsigned number that the text begins with: digits with at most one point, an
// optional exponent. 0 when there is none.
size_t numberLength(std::string_view text);

// As much of a text as an error's description shows.
std::string_view shownOnError(std::string_view text);

// A string's contents with its doubled quotes made single.
std::string unquoted(const Token& token, std::string_view source);

} // namespace discaro::db
