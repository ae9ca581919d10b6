#include "scanner/FileCapture.h"

#include "disc/medium/Medium.h"

#include <algorithm>
#include <array>

namespace discaro::scanner {

namespace {

struct Letter {
    unsigned bit;
    char letter;
};

constexpr std::array kLetters = {
    Letter{disc::attribute::kArchive, 'A'},   Letter{disc::attribute::kHidden, 'H'},
    Letter{disc::attribute::kReadOnly, 'R'},  Letter{disc::attribute::kSystem, 'S'},
    Letter{disc::attribute::kDirectory, 'D'},
};

} // namespace

std::string extensionOf(std::string_view path) {
    const auto point = path.rfind('.');
    if (point == std::string_view::npos || point + 1 == path.size())
        return {};
    return std::string(path.substr(point));
}

std::string attributeLetters(unsigned attributes) {
    std::string text;
    for (const Letter& entry : kLetters)
        if ((attributes & entry.bit) != 0)
            text += entry.letter;
    return text;
}

StampParts splitStamp(std::string_view text) {
    const auto blank = text.find(' ');
    if (blank == std::string_view::npos)
        return {};
    const auto timeLength = std::min(blank + 1 + 2, text.size());
    return {std::string(text.substr(0, blank)), std::string(text.substr(text.size() - timeLength)), true};
}

} // namespace discaro::scanner
