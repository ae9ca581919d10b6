#include "db/dialect/DialectTokens.h"

#include "base/RuntimeError.h"
#include "base/Sentence.h"
#include "base/Text.h"
#include "base/Utf8Step.h"

#include <algorithm>
#include <array>

namespace discaro::db {

namespace {

struct KeywordEntry {
    std::string_view word;
    Keyword keyword;
};

constexpr std::array kKeywords = {
    KeywordEntry{"and", Keyword::And},       KeywordEntry{"as", Keyword::As},
    KeywordEntry{"asc", Keyword::Asc},       KeywordEntry{"between", Keyword::Between},
    KeywordEntry{"by", Keyword::By},         KeywordEntry{"delete", Keyword::Delete},
    KeywordEntry{"desc", Keyword::Desc},     KeywordEntry{"false", Keyword::False},
    KeywordEntry{"from", Keyword::From},     KeywordEntry{"in", Keyword::In},
    KeywordEntry{"is", Keyword::Is},         KeywordEntry{"like", Keyword::Like},
    KeywordEntry{"not", Keyword::Not},       KeywordEntry{"null", Keyword::Null},
    KeywordEntry{"or", Keyword::Or},         KeywordEntry{"order", Keyword::Order},
    KeywordEntry{"select", Keyword::Select}, KeywordEntry{"true", Keyword::True},
    KeywordEntry{"where", Keyword::Where},
};

constexpr size_t kShownOnError = 60;

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isWordStart(char c) {
    const auto lower = static_cast<unsigned char>(c | 0x20);
    return (lower >= 'a' && lower <= 'z') || c == '_' || static_cast<unsigned char>(c) >= 0x80;
}

bool isWordPart(char c) {
    return isWordStart(c) || isDigit(c);
}

Keyword keywordOf(std::string_view word) {
    for (const KeywordEntry& entry : kKeywords)
        if (entry.word.size() == word.size() && base::equalAscii(entry.word, word))
            return entry.keyword;
    return Keyword::None;
}

Symbol singleSymbol(char c) {
    switch (c) {
    case ',':
        return Symbol::Comma;
    case '.':
        return Symbol::Dot;
    case '*':
        return Symbol::Star;
    case '(':
        return Symbol::LeftParenthesis;
    case ')':
        return Symbol::RightParenthesis;
    case ';':
        return Symbol::Semicolon;
    case '+':
        return Symbol::Plus;
    case '-':
        return Symbol::Minus;
    case '=':
        return Symbol::Equal;
    case '<':
        return Symbol::Less;
    case '>':
        return Symbol::Greater;
    default:
        return Symbol::End;
    }
}

size_t digitsEnd(std::string_view text, size_t from) {
    while (from < text.size() && isDigit(text[from]))
        ++from;
    return from;
}

} // namespace

size_t numberLength(std::string_view text) {
    size_t end = digitsEnd(text, 0);
    size_t digits = end;
    if (end < text.size() && text[end] == '.') {
        const size_t fraction = digitsEnd(text, end + 1);
        digits += fraction - end - 1;
        end = fraction;
    }
    if (digits == 0)
        return 0;
    if (end < text.size() && (text[end] | 0x20) == 'e') {
        size_t exponent = end + 1;
        if (exponent < text.size() && (text[exponent] == '+' || text[exponent] == '-'))
            ++exponent;
        const size_t exponentEnd = digitsEnd(text, exponent);
        if (exponentEnd > exponent)
            end = exponentEnd;
    }
    return end;
}

std::string_view shownOnError(std::string_view text) {
    size_t end = std::min(text.size(), kShownOnError);
    if (end < text.size())
        while (end > 0 && base::isContinuation(text[end]))
            --end;
    return text.substr(0, end);
}

std::string unquoted(const Token& token, std::string_view source) {
    const char quote = source[token.begin];
    std::string text;
    text.reserve(token.text.size());
    for (size_t at = 0; at < token.text.size(); ++at) {
        text += token.text[at];
        if (token.text[at] == quote)
            ++at;
    }
    return text;
}

Tokenizer::Tokenizer(std::string_view source)
    : m_source(source) {
    advance();
}

void Tokenizer::advance() {
    size_t begin = m_current.end;
    while (begin < m_source.size() && isBlank(m_source[begin]))
        ++begin;
    m_current = Token{Symbol::End, Keyword::None, {}, begin, begin};
    if (begin == m_source.size())
        return;
    const char c = m_source[begin];
    if (isWordStart(c)) {
        size_t end = begin + 1;
        while (isWordPart(at(end)))
            ++end;
        finish(Symbol::Word, end);
        m_current.keyword = keywordOf(m_current.text);
    } else if (c == '[') {
        readDelimited(Symbol::Bracketed, ']');
    } else if (c == '\'' || c == '"') {
        readDelimited(Symbol::Text, c);
    } else if (const size_t length = numberLength(m_source.substr(begin)); length > 0) {
        finish(Symbol::Number, begin + length);
    } else {
        readOperator();
    }
}

void Tokenizer::finish(Symbol symbol, size_t end) {
    m_current.symbol = symbol;
    m_current.end = end;
    m_current.text = m_source.substr(m_current.begin, end - m_current.begin);
}

// A doubled quote stands for one; a bracket cannot be doubled.
void Tokenizer::readDelimited(Symbol symbol, char close) {
    size_t end = m_current.begin + 1;
    while (true) {
        end = m_source.find(close, end);
        if (end == std::string_view::npos)
            fail();
        if (symbol != Symbol::Text || at(end + 1) != close)
            break;
        end += 2;
    }
    m_current.symbol = symbol;
    m_current.text = m_source.substr(m_current.begin + 1, end - m_current.begin - 1);
    m_current.end = end + 1;
}

void Tokenizer::readOperator() {
    const size_t begin = m_current.begin;
    const char next = at(begin + 1);
    const Symbol first = singleSymbol(m_source[begin]);
    if (first == Symbol::End)
        fail();
    if (first == Symbol::Less && next == '>')
        finish(Symbol::NotEqual, begin + 2);
    else if (first == Symbol::Less && next == '=')
        finish(Symbol::LessEqual, begin + 2);
    else if (first == Symbol::Greater && next == '=')
        finish(Symbol::GreaterEqual, begin + 2);
    else
        finish(first, begin + 1);
}

bool Tokenizer::take(Symbol symbol) {
    if (!is(symbol))
        return false;
    advance();
    return true;
}

bool Tokenizer::take(Keyword keyword) {
    if (!is(keyword))
        return false;
    advance();
    return true;
}

void Tokenizer::expect(Symbol symbol) {
    if (!take(symbol))
        fail();
}

void Tokenizer::expect(Keyword keyword) {
    if (!take(keyword))
        fail();
}

std::string_view Tokenizer::takeName() {
    const bool name = is(Symbol::Bracketed) || (is(Symbol::Word) && is(Keyword::None));
    const std::string_view text = m_current.text;
    if (!name || text.empty())
        fail();
    advance();
    return text;
}

void Tokenizer::expectEnd() {
    take(Symbol::Semicolon);
    if (!is(Symbol::End))
        fail();
}

std::string Tokenizer::takeFileName() {
    size_t begin = m_current.end;
    while (isBlank(at(begin)))
        ++begin;
    const char first = at(begin);
    if (first == '\'' || first == '"' || first == '[') {
        advance();
        const Token token = m_current;
        advance();
        return first == '[' ? std::string(token.text) : unquoted(token, m_source);
    }
    size_t end = begin;
    while (end < m_source.size() && !isBlank(m_source[end]) && m_source[end] != ';')
        ++end;
    m_current.end = end;
    advance();
    return std::string(m_source.substr(begin, end - begin));
}

void Tokenizer::fail() const {
    const std::string_view rest = shownOnError(m_source.substr(m_current.begin));
    if (rest.empty())
        throw base::RuntimeError(base::ErrorNumber::SyntaxError, "the text ends too early");
    throw base::RuntimeError(base::ErrorNumber::SyntaxError, base::filledIn("near %1", {rest}));
}

} // namespace discaro::db
