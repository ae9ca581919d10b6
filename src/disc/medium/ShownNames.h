#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace discaro::disc {

// The name under which an entry is shown and catalogued, made from the name as the medium has it. Any bytes give a
// name that is valid UTF-8 and not empty, and that can be a part of a drive path: bytes without a stated encoding
// read as base::decodeUnlabelled tells; a backslash, a slash and a NUL become U+FF3C, U+FF0F and U+FFFD; names that
// would mean a place ("." and "..") are written with full-width stops; an empty name becomes U+FFFD.
std::string shownName(std::string_view raw);

// A path of the computer as a text for the user: valid UTF-8 with its slashes.
std::string shownPath(const std::filesystem::path& path);

// Without the file version at the end (";1"). A name that is nothing else stays whole.
std::string_view withoutVersion(std::string_view name);

// An ISO 9660 file identifier as people know it: the version cut, then one full stop at the end, which stands there
// when a name has no extension. What would leave nothing is not cut.
std::string_view plainIsoName(std::string_view identifier);

} // namespace discaro::disc
