#include "disc/text/IniFile.h"

#include "base/Text.h"
#include "base/Utf8Step.h"
#include "disc/text/TextLines.h"

#include <optional>

namespace discaro::disc {

namespace {

// Blanks, tabs, and the NULs that some old installers padded their lines with.
std::string_view trimmed(std::string_view text) {
    using namespace std::string_view_literals;
    constexpr auto kBlank = " \t\0"sv;
    const auto first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

// A much longer text is never the same name, and folding a hostile one of a megabyte takes minutes.
bool isName(std::string_view text, std::string_view name) {
    constexpr size_t kMostBytesForOne = 16; // of the forms of one character that compare equal
    return text.size() <= name.size() * kMostBytesForOne && base::equalFolded(text, name);
}

// The name in a section's head, which may lack its closing bracket; nothing for any other line.
std::optional<std::string_view> sectionName(std::string_view line) {
    if (!line.starts_with('['))
        return std::nullopt;
    return trimmed(line.substr(1, line.find(']') - 1));
}

// The value when the line gives one to the key.
std::optional<std::string_view> valueOf(std::string_view key, std::string_view line) {
    const auto equals = line.find('=');
    if (equals == std::string_view::npos || line.starts_with(';') || !isName(trimmed(line.substr(0, equals)), key))
        return std::nullopt;
    return trimmed(line.substr(equals + 1));
}

std::string_view withoutQuotes(std::string_view value) {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == '"' || value.front() == '\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

std::optional<std::string> findValue(const ByteSource& source, std::string_view section, std::string_view key) {
    TextLineReader reader(source);
    bool inSection = false;
    for (auto text = reader.next(); text; text = reader.next()) {
        const auto line = trimmed(*text);
        if (const auto name = sectionName(line)) {
            if (inSection)
                return std::nullopt;
            inSection = isName(*name, section);
        } else if (const auto value = inSection ? valueOf(key, line) : std::nullopt) {
            const auto bare = withoutQuotes(*value);
            return std::string(bare.substr(0, bare.find('\0')));
        }
    }
    return std::nullopt;
}

} // namespace

IniText privateProfileString(const ByteSource& source, std::string_view section, std::string_view key,
                             std::string_view defaultText, int bufferLength) {
    const auto value = findValue(source, trimmed(section), trimmed(key)).value_or(base::decodeUnlabelled(defaultText));
    IniText result;
    size_t end = 0;
    for (; end < value.size(); ++end) {
        if (base::isContinuation(value[end]))
            continue;
        if (result.copied + 1 >= bufferLength)
            break;
        ++result.copied;
    }
    result.text = value.substr(0, end);
    return result;
}

} // namespace discaro::disc
