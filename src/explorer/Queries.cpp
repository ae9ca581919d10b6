#include "explorer/Queries.h"

namespace discaro::explorer {

const std::string_view kDiscsQuery = "select * from Drive";

const std::string_view kRootDirectoriesQuery =
    "select directories.* FROM directories IN kvt.mde where [id number] like '*' and [directory "
    "name] like '?:\\'";

namespace {

std::string quoted(std::string_view key) {
    return std::string("'").append(key).append("'");
}

} // namespace

std::string discQuery(std::string_view discNumber) {
    return std::string("select * FROM drive where [id number] = ").append(discNumber);
}

std::string discDirectoriesQuery(std::string_view discNumber) {
    return std::string("select * from Directories where [Drive id Number] like ").append(discNumber);
}

std::string subdirectoriesQuery(std::string_view directoryNumber) {
    return "select * from Directories where [parent id] like " + quoted(directoryNumber);
}

std::string filesQuery(std::string_view directoryNumber) {
    return "select * from files where [Directory Number] like " + quoted(directoryNumber);
}

bool findsOthers(std::string_view directoryNumber) {
    return directoryNumber.find_first_of("*?#") != std::string_view::npos;
}

} // namespace discaro::explorer
