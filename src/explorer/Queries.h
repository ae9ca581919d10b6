#pragma once

#include <string>
#include <string_view>

// The statements that the explorer runs. Numbers and keys stand in them as they are: a key with a quotation mark makes
// a statement that the store refuses.
namespace discaro::explorer {

extern const std::string_view kDiscsQuery;
// The root directory of every disc: only a root has a name of the form letter, colon, backslash. Names the catalogue
// by its bare name, so it speaks of the file of that name in the current folder.
extern const std::string_view kRootDirectoriesQuery;

std::string discQuery(std::string_view discNumber);
std::string discDirectoriesQuery(std::string_view discNumber);
// The directories and the files directly in a directory.
std::string subdirectoriesQuery(std::string_view directoryNumber);
std::string filesQuery(std::string_view directoryNumber);

// Whether a directory's number finds the rows of other directories, too, because it has wildcards. No scan gives such a
// one.
bool findsOthers(std::string_view directoryNumber);

} // namespace discaro::explorer
