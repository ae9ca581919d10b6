#include "disc/executable/VersionResource.h"

#include "base/Text.h"
#include "disc/executable/VersionResourceBlock.h"
#include "disc/executable/VersionResourceText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <vector>

namespace discaro::disc {

namespace {

struct NamedText {
    std::string_view key;
    std::string VersionTexts::*text;
};

constexpr std::array kTexts = {
    NamedText{"CompanyName", &VersionTexts::companyName},
    NamedText{"FileDescription", &VersionTexts::fileDescription},
    NamedText{"LegalCopyright", &VersionTexts::legalCopyright},
    NamedText{"ProductName", &VersionTexts::productName},
    NamedText{"ProductVersion", &VersionTexts::productVersion},
    NamedText{"InternalName", &VersionTexts::internalName},
    NamedText{"OriginalFilename", &VersionTexts::originalFileName},
};

// A table's key and a translation are the same number: language in the upper half, code page in the
// lower.
using Translation = uint32_t;
constexpr size_t kTranslationDigits = 8;

constexpr size_t kMostTables = 256; // looked at for texts

std::optional<Translation> translationOfKey(std::string_view key) {
    Translation number = 0;
    const auto* end = key.data() + key.size();
    const auto [stop, error] = std::from_chars(key.data(), end, number, 16);
    if (key.size() != kTranslationDigits || error != std::errc() || stop != end)
        return std::nullopt;
    return number;
}

// Reads the texts of one version resource.
class TextReader {
public:
    explicit TextReader(std::string_view resource)
        : m_tree(resource) {}

    VersionTexts read();

private:
    void sort(const VersionBlock& part);
    VersionTexts textsOf(const VersionBlock& table);
    std::string textOf(const VersionBlock& block, unsigned codePage) const;

    VersionBlockTree m_tree;
    std::optional<Translation> m_translation; // the first one of the list
    std::vector<VersionBlock> m_tables;
};

VersionTexts TextReader::read() {
    const auto root = m_tree.root();
    if (!root)
        return {};
    for (const auto& part : m_tree.children(*root))
        sort(part);
    std::stable_partition(m_tables.begin(), m_tables.end(), [this](const VersionBlock& table) {
        return m_translation && translationOfKey(table.key) == m_translation;
    });
    m_tables.resize(std::min(m_tables.size(), kMostTables));
    for (const auto& table : m_tables) {
        if (auto texts = textsOf(table); texts != VersionTexts{})
            return texts;
    }
    return {};
}

// Remembers the tables of a part with texts, or the first translation of the part that lists them.
void TextReader::sort(const VersionBlock& part) {
    if (base::equalAscii(part.key, "StringFileInfo")) {
        const auto tables = m_tree.children(part);
        m_tables.insert(m_tables.end(), tables.begin(), tables.end());
    }
    if (!base::equalAscii(part.key, "VarFileInfo"))
        return;
    for (const auto& list : m_tree.children(part)) {
        const auto first = m_tree.bytes(list, 4);
        const bool holdsOne = list.declaredLength > 0 && first.size() == 4;
        if (m_translation || !holdsOne || !base::equalAscii(list.key, "Translation"))
            continue;
        const auto byte = [&](size_t at) { return static_cast<Translation>(static_cast<unsigned char>(first[at])); };
        m_translation = byte(1) << 24 | byte(0) << 16 | byte(3) << 8 | byte(2);
    }
}

// Of two texts with the same key the first counts.
VersionTexts TextReader::textsOf(const VersionBlock& table) {
    const auto codePage = translationOfKey(table.key).value_or(m_translation.value_or(0)) & 0xFFFF;
    VersionTexts texts;
    for (const auto& block : m_tree.children(table)) {
        const auto* named = std::ranges::find_if(
            kTexts, [&](const NamedText& candidate) { return base::equalAscii(candidate.key, block.key); });
        if (named != kTexts.end() && (texts.*(named->text)).empty())
            texts.*(named->text) = textOf(block, codePage);
    }
    return texts;
}

std::string TextReader::textOf(const VersionBlock& block, unsigned codePage) const {
    const auto bytes = m_tree.text(block);
    auto text = m_tree.isWide() ? base::decodeUtf16Le(bytes) : decodeCodePage(bytes, codePage);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

VersionTexts versionTexts(std::string_view resource) {
    return TextReader(resource).read();
}

} // namespace discaro::disc
