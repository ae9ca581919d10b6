#include "explorer/TagHandOver.h"

#include "app/Module1.h"
#include "base/Number.h"
#include "base/RuntimeError.h"
#include "catalogue/Names.h"

namespace discaro::explorer {

using base::skipErrors;
namespace shared = app::Module1;
namespace drive = catalogue::drive;
namespace directory = catalogue::directories;

namespace {

std::string textIn(const db::DataSource& source, std::string_view field) {
    return source.Recordset()(field).Text();
}

void give(std::string& variable, const db::DataSource& source, std::string_view field) {
    skipErrors([&] { variable = textIn(source, field); });
}

// What is tagged: its kind, and its number.
void giveKey(std::string kind, const db::DataSource& source, std::string_view field) {
    skipErrors([&] { shared::TagKey = kind.append(textIn(source, field)); });
}

void giveDisc(const db::DataSource& discs) {
    give(shared::TagDisc, discs, drive::kIdNumber);
    give(shared::TagDiscName, discs, drive::kPreferedName);
}

void giveDirectory(const db::DataSource& directories) {
    give(shared::TagDirectory, directories, directory::kIdNumber);
    give(shared::TagDirectoryPath, directories, directory::kDirectoryPath);
}

void giveNoFile() {
    shared::TagFile.clear();
    shared::TagFileName.clear();
}

} // namespace

void handOverFile(const TaggedFile& file, const db::DataSource& discs, const db::DataSource& directories) {
    shared::TagKey = "FILE" + file.number;
    giveDisc(discs);
    giveDirectory(directories);
    shared::TagFile = file.number;
    shared::TagFileName = file.name;
    shared::TagSize = file.size;
    shared::TagFileCount = "1";
}

void handOverDirectory(const db::DataSource& discs, const db::DataSource& directories) {
    giveKey("DIR", directories, directory::kIdNumber);
    giveDisc(discs);
    giveDirectory(directories);
    giveNoFile();
    give(shared::TagSize, directories, directory::kTotalSize);
    if (shared::TagSize.empty())
        give(shared::TagSize, directories, directory::kSize);
    give(shared::TagFileCount, directories, directory::kTotalNumberOfFiles);
}

void handOverDisc(const db::DataSource& discs) {
    constexpr double kKilobytes = 1024;
    giveKey("CD", discs, drive::kIdNumber);
    giveDisc(discs);
    shared::TagDirectory.clear();
    shared::TagDirectoryPath.clear();
    giveNoFile();
    skipErrors([&] {
        const double megabytes = discs.Recordset()(drive::kTotalSize).Number();
        shared::TagSize = base::numberText(megabytes * kKilobytes);
    });
    shared::TagFileCount.clear();
}

void simulateDirectory(const db::DataSource& directories, const std::string& discName) {
    give(shared::SimDirectory, directories, directory::kIdNumber);
    give(shared::SimParent, directories, directory::kParentId);
    give(shared::SimSubdirectories, directories, directory::kTotalNumberOfSubdirectories);
    give(shared::SimFiles, directories, directory::kTotalNumberOfFiles);
    give(shared::SimSize, directories, directory::kTotalSize);
    shared::SimDiscName = discName;
}

} // namespace discaro::explorer
