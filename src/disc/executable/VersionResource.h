#pragma once

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

// The texts of a version resource as Executable gives it, in the language that comes first in its list
// of translations; where that has no texts, of the first language that has. Any bytes may be given: none
// give empty texts, damaged ones what can be read.
VersionTexts versionTexts(std::string_view resource);

} // namespace discaro::disc
