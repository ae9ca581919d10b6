#pragma once

#include <array>
#include <string_view>

namespace discaro::explorer {

// The kinds of rows in a listing; each is the key of its picture.
inline constexpr std::array<std::string_view, 28> kKinds = {
    "folder", "movie", "setup", "uninst", "exe", "dll", "cpl",  "htm", "zip", "music", "ini", "font", "text", "help",
    "pdf",    "scr",   "pic",   "jpg",    "gif", "tga", "tiff", "reg", "cur", "xls",   "ppt", "word", "mdb",  "file"};

// The kind of a file by its extension with the dot, and for ".exe" by its name; no regard to case. What the table does
// not know is a "file": so are ".jpeg", ".tiff" and ".mpg".
std::string_view fileKind(std::string_view extension, std::string_view fileName);

} // namespace discaro::explorer
