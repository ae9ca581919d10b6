#include "disc/executable/VersionResourceText.h"

#include "base/Text.h"

#include <iconv.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>

namespace discaro::disc {

namespace {

constexpr unsigned kWestern = 1252;
constexpr unsigned kConverted[] = {437, 850,  852,  855,  866,  874,  932,  936,  949,
                                   950, 1250, 1251, 1253, 1254, 1255, 1256, 1257, 1258};

struct CloseConverter {
    using pointer = iconv_t;
    void operator()(iconv_t converter) const { iconv_close(converter); }
};

// Nothing when the bytes are not all text of the code page, or the system does not know it.
std::optional<std::string> converted(std::string_view bytes, unsigned codePage) {
    const auto name = "CP" + std::to_string(codePage);
    auto* const opened = iconv_open("UTF-8", name.c_str());
    if (opened == reinterpret_cast<iconv_t>(-1))
        return std::nullopt;
    const std::unique_ptr<iconv_t, CloseConverter> converter(opened);
    constexpr size_t kLongestCharacter = 6; // UTF-8 bytes for one byte; a few give a base letter and a mark
    std::string input(bytes);
    std::string output((input.size() + 1) * kLongestCharacter, '\0');
    char* from = input.data();
    char* to = output.data();
    size_t inputLeft = input.size();
    size_t outputLeft = output.size();
    const auto failed = static_cast<size_t>(-1);
    if (iconv(opened, &from, &inputLeft, &to, &outputLeft) == failed ||
        iconv(opened, nullptr, nullptr, &to, &outputLeft) == failed)
        return std::nullopt;
    output.resize(output.size() - outputLeft);
    return output;
}

} // namespace

std::string decodeCodePage(std::string_view bytes, unsigned codePage) {
    if (base::isAscii(bytes))
        return std::string(bytes);
    if (codePage == kWestern)
        return base::decodeWindows1252(bytes);
    if (std::ranges::find(kConverted, codePage) != std::end(kConverted)) {
        if (auto text = converted(bytes, codePage))
            return *text;
    }
    return base::decodeUnlabelled(bytes);
}

} // namespace discaro::disc
