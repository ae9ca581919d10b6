#include "disc/medium/ShownNames.h"

#include "base/Text.h"

#include <algorithm>

namespace discaro::disc {

namespace {

constexpr std::string_view kFullWidthBackslash = "\uFF3C";
constexpr std::string_view kFullWidthSlash = "\uFF0F";
constexpr std::string_view kFullWidthStop = "\uFF0E";
constexpr std::string_view kReplacement = "\uFFFD";

bool isSafe(char c) {
    return c > 0 && c != '\\' && c != '/';
}

void appendSafely(std::string& name, char c) {
    switch (c) {
    case '\\':
        name += kFullWidthBackslash;
        break;
    case '/':
        name += kFullWidthSlash;
        break;
    case '\0':
        name += kReplacement;
        break;
    default:
        name += c;
    }
}

std::string decodedSafely(std::string_view raw) {
    std::string name;
    for (const char c : base::decodeUnlabelled(raw))
        appendSafely(name, c);
    return name;
}

} // namespace

std::string shownName(std::string_view raw) {
    if (raw.empty())
        return std::string(kReplacement);
    if (raw == ".")
        return std::string(kFullWidthStop);
    if (raw == "..")
        return std::string(kFullWidthStop) + std::string(kFullWidthStop);
    if (std::ranges::all_of(raw, isSafe))
        return std::string(raw);
    return decodedSafely(raw);
}

std::string shownPath(const std::filesystem::path& path) {
    return base::decodeUnlabelled(path.native());
}

std::string_view withoutVersion(std::string_view name) {
    const auto mark = name.rfind(';');
    if (mark == std::string_view::npos || mark == 0 || mark + 1 == name.size())
        return name;
    const auto version = name.substr(mark + 1);
    const bool digits = std::ranges::all_of(version, [](char c) { return c >= '0' && c <= '9'; });
    return digits ? name.substr(0, mark) : name;
}

std::string_view plainIsoName(std::string_view identifier) {
    auto name = withoutVersion(identifier);
    if (name.size() > 1 && name.back() == '.')
        name.remove_suffix(1);
    return name;
}

} // namespace discaro::disc
