#include "base/Text.h"
#include "disc/executable/Executable.h"
#include "disc/executable/ExecutableReader.h"
#include "disc/executable/VersionResource.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <span>
#include <string_view>

// Any bytes as a file of a disc, and as a version resource alone.

namespace {

using namespace discaro;

class InputSource : public disc::ByteSource {
public:
    explicit InputSource(std::string_view bytes)
        : m_bytes(bytes) {}

    uint64_t size() const override { return m_bytes.size(); }

    size_t read(uint64_t offset, std::span<std::byte> buffer) const override {
        m_asked += buffer.size();
        if (offset >= m_bytes.size())
            return 0;
        const auto part = m_bytes.substr(static_cast<size_t>(offset), buffer.size());
        std::memcpy(buffer.data(), part.data(), part.size());
        return part.size();
    }

    uint64_t asked() const { return m_asked; }

private:
    std::string_view m_bytes;
    mutable uint64_t m_asked = 0;
};

void require(bool holds) {
    if (!holds)
        std::abort();
}

void requireSound(const disc::VersionTexts& texts) {
    for (const auto* text : {&texts.companyName, &texts.fileDescription, &texts.legalCopyright, &texts.productName,
                             &texts.productVersion, &texts.internalName, &texts.originalFileName}) {
        require(base::isValidUtf8(*text));
        require(text->find('\0') == std::string::npos && !text->ends_with(' '));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const InputSource source(bytes);
    disc::Executable executable(source);
    const auto version = disc::versionTexts(executable.versionResource());
    const auto icons = executable.icons();
    require(icons >= 0 && icons <= disc::ExecutableReader::kEntryLimit);
    require(source.asked() <= disc::ExecutableReader::kReadLimit);
    requireSound(version);
    const InputSource again(bytes);
    require(disc::Executable(again).icons() >= icons);
    requireSound(disc::versionTexts(bytes.substr(0, 0x10000)));
    return 0;
}
