#include "app/SingleInstance.h"
#include "base/RuntimeError.h"
#include "catalogue/EmptyCatalogue.h"
#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "program/ApplicationFolder.h"
#include "support/Files.h"
#include "support/ScratchFolder.h"
#include "support/catalogue/FreshProgram.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>

namespace discaro::program {
namespace {

namespace fs = std::filesystem;

using test::readFile;
using test::writeFile;

// Folders of their own for an executable and for a user, and a catalogue's content in one number.
class ApplicationFolder : public testing::Test {
protected:
    ApplicationFolder() {
        db::DBEngine::SetFormat(catalogue::catalogueFormat());
        for (const auto& each : {executable, data})
            fs::create_directories(each);
        qputenv("XDG_DATA_HOME", QByteArray::fromStdString(data.string()));
    }
    ~ApplicationFolder() override {
        qunsetenv("XDG_DATA_HOME");
        fs::permissions(executable, fs::perms::owner_all);
    }

    // A catalogue that tells itself from others by its disc.
    static void makeCatalogue(const fs::path& path, int disc, int hoursOld = 0) {
        fs::create_directories(path.parent_path());
        catalogue::createEmptyCatalogue(path);
        {
            auto rows = db::DBEngine::OpenDatabase(path)->OpenRecordset("drive");
            rows->AddNew();
            (*rows)(catalogue::drive::kIdNumber) = disc;
            rows->Update();
        }
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(hoursOld));
    }
    // 0 for an empty catalogue.
    static int discIn(const fs::path& path) {
        auto rows = db::DBEngine::OpenDatabase(path)->OpenRecordset("drive");
        return rows->RecordCount() == 0 ? 0 : std::stoi(rows->Fields(catalogue::drive::kIdNumber).Text());
    }
    void prepare() const { prepareApplicationFolder(executable, executable / "template.ini"); }
    fs::path catalogueFile() const { return executable / "kvt.mde"; }

    const test::FreshProgram program;
    const test::ScratchFolder folder;
    const fs::path executable = folder.path() / "bin";
    const fs::path data = folder.path() / "data";
};

// Root may write everywhere; what holds for others is looked at where the tests run as another.
bool writesEverywhere() {
    return ::geteuid() == 0;
}

} // namespace

TEST_F(ApplicationFolder, IsTheExecutablesOwnWhereTheUserCanWriteToIt) {
    EXPECT_EQ(findApplicationFolder(executable), executable);
}

TEST_F(ApplicationFolder, IsTheUsersWhereTheExecutablesCanNotBeWrittenTo) {
    fs::permissions(executable, fs::perms::owner_read | fs::perms::owner_exec);
    const auto expected = writesEverywhere() ? executable : data / "Discaro";
    EXPECT_EQ(findApplicationFolder(executable), expected);
    EXPECT_EQ(findApplicationFolder(executable / "not there"), data / "Discaro");
}

TEST_F(ApplicationFolder, OfAnExecutableThatIsSharedHoldsTheCatalogueOfWhoHasNone) {
    makeCatalogue(catalogueFile(), 1);
    fs::permissions(executable, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(findApplicationFolder(executable), executable);
    makeCatalogue(data / "Discaro/kvt.mde", 2);
    const auto expected = writesEverywhere() ? executable : data / "Discaro";
    EXPECT_EQ(findApplicationFolder(executable), expected) << "the user's own wins";
}

TEST_F(ApplicationFolder, AMissingCatalogueIsMadeEmpty) {
    prepare();
    EXPECT_EQ(discIn(catalogueFile()), 0);
    EXPECT_FALSE(fs::exists(executable / "kvt.ini")) << "there was no template";
}

TEST_F(ApplicationFolder, WhatIsThereIsNeverOverwritten) {
    makeCatalogue(catalogueFile(), 7);
    makeCatalogue(executable / "kvt.tmp", 8);
    writeFile(executable / "kvt.ini", "mine");
    writeFile(executable / "template.ini", "delivered");
    prepare();
    EXPECT_EQ(discIn(catalogueFile()), 7);
    EXPECT_EQ(discIn(executable / "kvt.tmp"), 8);
    EXPECT_EQ(readFile(executable / "kvt.ini"), "mine");
}

TEST_F(ApplicationFolder, ALinkThatLeadsNowhereIsNotOverwritten) {
    fs::create_symlink(executable / "a disk that is not mounted", catalogueFile());
    prepare();
    EXPECT_TRUE(fs::is_symlink(catalogueFile()));
}

TEST_F(ApplicationFolder, TheCategoryListIsCopiedOnce) {
    writeFile(executable / "template.ini", "[Games]");
    prepare();
    EXPECT_EQ(readFile(executable / "kvt.ini"), "[Games]");
}

TEST_F(ApplicationFolder, AParkedCatalogueComesBackUnderItsName) {
    for (const char* parked : {"kvt.tmp", "kvt.tmo"}) {
        makeCatalogue(executable / parked, 5);
        prepare();
        EXPECT_EQ(discIn(catalogueFile()), 5) << parked;
        EXPECT_FALSE(fs::exists(executable / parked));
        fs::remove(catalogueFile());
    }
}

TEST_F(ApplicationFolder, OfTwoParkedCataloguesTheLaterOneComesBack) {
    makeCatalogue(executable / "kvt.tmp", 1, 500);
    makeCatalogue(executable / "kvt.tmo", 2);
    prepare();
    EXPECT_EQ(discIn(catalogueFile()), 2);
    EXPECT_EQ(discIn(executable / "kvt.tmp"), 1) << "the other one stays where it is";
}

TEST_F(ApplicationFolder, AParkedFileThatIsNoCatalogueStandsBackBehindOneThatIs) {
    writeFile(executable / "kvt.tmp", std::string(4096, 'x'));
    makeCatalogue(executable / "kvt.tmo", 3, 500);
    prepare();
    EXPECT_EQ(discIn(catalogueFile()), 3);
}

TEST_F(ApplicationFolder, AParkedFileThatCanNotBeReadAsACatalogueStillComesBeforeAnEmptyOne) {
    writeFile(executable / "kvt.tmp", std::string(4096, 'x'));
    prepare();
    EXPECT_EQ(readFile(catalogueFile()), std::string(4096, 'x'));
}

TEST_F(ApplicationFolder, AnEmptyParkedFileDoesNotComeBack) {
    writeFile(executable / "kvt.tmp", "");
    prepare();
    EXPECT_EQ(discIn(catalogueFile()), 0);
}

TEST_F(ApplicationFolder, TheJournalOfACatalogueThatHasGoneIsSetAsideAndKept) {
    for (const int number : {1, 2}) {
        writeFile(executable / "kvt.mde-journal", "journal " + std::to_string(number));
        prepare();
        EXPECT_EQ(discIn(catalogueFile()), 0);
        EXPECT_EQ(readFile(executable / ("kvt.mde-journal." + std::to_string(number))),
                  "journal " + std::to_string(number));
        fs::remove(catalogueFile());
    }
}

TEST_F(ApplicationFolder, AFolderThatCanNotBeMadeReadySaysSo) {
    writeFile(executable / "file", "in the way");
    EXPECT_THROW(prepareApplicationFolder(executable / "file", {}), std::exception);
}

} // namespace discaro::program
