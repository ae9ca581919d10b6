#pragma once

#include "disc/Medium.h"

#include <string>
#include <string_view>

namespace discaro::disc {

// The texts that an executable's version resource tells about it. UTF-8, without what follows a NUL
// and without blanks at the end; otherwise as the file has them. Empty where the file has none.
struct VersionTexts {
    std::string companyName;
    std::string fileDescription;
    std::string legalCopyright;
    std::string productName;
    std::string productVersion;
    std::string internalName;
    std::string originalFileName;

    bool operator==(const VersionTexts&) const = default;
};

// The version texts of a 16-, 32- or 64-bit executable or library of any extension, in the language
// that comes first in the resource's list of translations; where that has no texts, of the first
// language that has. A file without a version resource gives empty texts; of a damaged one, what
// can be read. Throws only what the source throws.
VersionTexts readVersionTexts(const ByteSource& source);

// The same from the bytes of a version resource alone. Any bytes may be given.
VersionTexts versionTexts(std::string_view resource);

} // namespace discaro::disc
