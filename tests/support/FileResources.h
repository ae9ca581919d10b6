#pragma once

#include "disc/executable/Executable.h"
#include "disc/executable/VersionResource.h"

#include <cstdint>
#include <utility>

namespace discaro::test {

// Version texts and icon count of a file, read as a scan reads them: with one look at the file.
struct FileResources {
    disc::VersionTexts version;
    int64_t icons = 0;
};

inline FileResources readResources(const disc::ByteSource& source) {
    disc::Executable executable(source);
    auto version = disc::versionTexts(executable.versionResource());
    return {std::move(version), executable.icons()};
}

} // namespace discaro::test
