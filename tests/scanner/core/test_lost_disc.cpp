#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "scanner/core/ScanRig.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <filesystem>

// Discs that go away: before the scan, in the middle of it, and those that only seem to.
namespace discaro::test {
namespace {

scanner::ScanOptions options(const char* errorAction = "ignore", const char* log = "true") {
    return {.DetailLevel = "basic", .ErrorAction = errorAction, .LogErrors = log, .UseFreeNumber = {}};
}

MemoryNode twentyDirectories() {
    std::vector<MemoryNode> children;
    for (int i = 0; i < 20; ++i)
        children.push_back(folder("D" + std::to_string(i), {file("A", "x"), file("B", "y")}));
    return folder("", children);
}

class LostDisc : public testing::Test {
protected:
    // An engine over the disc inserted last, as the wizard makes it; its error, if the scan can't begin.
    std::string whyNotScanned() {
        scanner::ScanEngine engine({rig.masterSource, rig.discs, rig.directories, rig.files}, rig.drives, rig.lister,
                                   rig.watcher,
                                   {.driveLetter = rig.letter,
                                    .preferredName = "Disc",
                                    .comments = {},
                                    .quickFiles = 1,
                                    .options = options()});
        try {
            engine.begin();
            engine.run();
        } catch (const base::RuntimeError& error) {
            return error.description();
        }
        return {};
    }
    // The disc inserted last goes at this yield of a scan.
    void vanishAt(MemoryMedium& medium, int yield) {
        rig.watcher.atYield = [&medium, yield](int number) {
            if (number == yield)
                medium.vanishAfter(0);
        };
    }
    void expectNothingHappened() {
        EXPECT_EQ(rig.watcher.log, std::vector<std::string>{});
        EXPECT_EQ(rig.count("drive") + rig.count("directories") + rig.count("files"), 0);
        EXPECT_EQ(rig.master("scanned cd-roms") + rig.master("scan error"), "0no error");
    }

    ScanRig rig;
};

TEST_F(LostDisc, ThatIsGoneAtTheStartIsNotScanned) {
    rig.insert(folder("", {file("A")})).vanishAfter(0);
    EXPECT_EQ(whyNotScanned(), "There is no disc in the drive, or it cannot be read");
    expectNothingHappened();
}

TEST_F(LostDisc, OfWhoseRootNothingCanBeReadIsNotScanned) {
    rig.insert(folder("", {file("A")}).withFailure(ErrorNumber::ReadFailure));
    EXPECT_EQ(whyNotScanned(), "The disc could not be read");
    rig.insert(folder("").withDamage("it ends before its records do"));
    EXPECT_EQ(whyNotScanned(), "The directory is damaged: it ends before its records do");
    expectNothingHappened();
}

TEST_F(LostDisc, WhoseDriveIsGoneIsNotScanned) {
    rig.insert(folder("", {file("A")}));
    rig.letter = 'X';
    EXPECT_EQ(whyNotScanned(), "The path was not found: X:");
    expectNothingHappened();
}

TEST_F(LostDisc, ThatIsBackAtTheNextTryIsScanned) {
    rig.insert(folder("", {file("A")})).failOn(Asked::List, 1);
    EXPECT_NE(whyNotScanned(), "");
    rig.scan();
    EXPECT_EQ(rig.watcher.log.back(), "finished");
    EXPECT_EQ(rig.count("files"), 1);
}

TEST_F(LostDisc, InTheMiddleOfTheWalkKeepsWhatWasReadAndIsToldAfterTheCommit) {
    auto& medium = rig.insert(twentyDirectories());
    vanishAt(medium, 40);
    rig.scan(options());
    EXPECT_EQ(rig.count("directories"), 21);
    const auto kept = rig.count("files");
    EXPECT_GT(kept, 0);
    EXPECT_LT(kept, 40);
    EXPECT_FALSE(rig.errorLog.empty());
    ASSERT_GE(rig.watcher.log.size(), 2u);
    EXPECT_EQ(rig.watcher.log[rig.watcher.log.size() - 2], "finished");
    EXPECT_EQ(rig.watcher.log.back(),
              "disc lost: The CD-ROM could not be read to its end. " + std::to_string(kept) +
                  " of the 40 files that were counted are in the catalogue. The errors are in the "
                  "CD-ROM's comments.");
}

TEST_F(LostDisc, WithoutLoggingTheCommentsAreNotMentioned) {
    auto& medium = rig.insert(twentyDirectories());
    vanishAt(medium, 40);
    rig.scan(options("ignore", "false"));
    EXPECT_TRUE(rig.watcher.log.back().starts_with("disc lost: "));
    EXPECT_TRUE(rig.watcher.log.back().ends_with(" are in the catalogue."));
}

TEST_F(LostDisc, WithItsLastFilesIsToldThoughAllHaveTheirRows) {
    auto& medium = rig.insert(folder("", {file("A"), file("B"), file("C")}));
    vanishAt(medium, 5);
    rig.scan(options());
    EXPECT_EQ(rig.count("files"), 3);
    EXPECT_TRUE(
        rig.watcher.log.back().starts_with("disc lost: The CD-ROM could not be read to its end. 3 of the 3 files "))
        << rig.watcher.log.back();
}

TEST_F(LostDisc, AFolderThatIsRemovedInTheWalkIsOne) {
    const auto path = app::Module1::ApplicationPath / "disc";
    for (int i = 0; i < 20; ++i)
        writeFile(path / std::to_string(i) / "A", "x");
    rig.letter = rig.drives.addImageOrFolder(path);
    rig.watcher.atYield = [&](int number) {
        if (number == 40)
            std::filesystem::remove_all(path);
    };
    rig.scan(options());
    EXPECT_TRUE(rig.watcher.log.back().starts_with("disc lost: ")) << rig.watcher.log.back();
}

TEST_F(LostDisc, ThatIsBackBeforeTheWalkEndsIsToldByTheFilesThatWereNotMet) {
    rig.insert(twentyDirectories()).failOn(Asked::List, 30, ErrorNumber::ReadFailure, 5);
    rig.scan(options());
    EXPECT_TRUE(
        rig.watcher.log.back().starts_with("disc lost: The CD-ROM could not be read to its end. 30 of the 40 files "))
        << rig.watcher.log.back();
}

TEST_F(LostDisc, ThatIsTakenOutOnlyWhenItHasBeenReadIsNone) {
    auto& medium = rig.insert(folder("", {file("BAD", "b").withFailure(ErrorNumber::ReadFailure), file("GOOD")}));
    rig.watcher.atYield = [&](int) {
        if (!rig.watcher.log.empty() && rig.watcher.log.back() == "totals started")
            medium.vanishAfter(0);
    };
    rig.scan(options());
    EXPECT_NE(rig.errorLog, "");
    EXPECT_EQ(rig.watcher.log.back(), "finished");
}

TEST_F(LostDisc, WithFewerFilesThanWereCountedIsNoneWhereItsDirectoriesAreAsTheyWere) {
    rig.insert(folder("", {file("BAD", "b").withFailure(ErrorNumber::ReadFailure),
                           folder("DEAD").withFailure(ErrorNumber::ReadFailure), file("GOOD")}));
    rig.quickFiles = 3;
    rig.scan(options());
    EXPECT_NE(rig.errorLog, "");
    EXPECT_EQ(rig.watcher.log.back(), "finished");
}

TEST_F(LostDisc, ADirectoryThatIsDeletedInTheWalkIsNone) {
    rig.insert(twentyDirectories()).failOn(Asked::List, 30, ErrorNumber::PathMissing);
    rig.scan(options());
    EXPECT_NE(rig.errorLog, "");
    EXPECT_EQ(rig.count("files"), 38);
    EXPECT_EQ(rig.watcher.log.back(), "finished");
}

TEST_F(LostDisc, SingleUnreadableFilesAreNone) {
    const auto bad = file("BAD", "b").withFailure(ErrorNumber::ReadFailure);
    rig.insert(folder("", {bad, file("GOOD"), folder("S", {bad, file("FINE")})}));
    rig.scan(options());
    EXPECT_NE(rig.errorLog, "");
    EXPECT_EQ(rig.watcher.log.back(), "finished");
}

TEST_F(LostDisc, FilesThatAreLeftOutOnTheUsersWishAreNone) {
    rig.insert(folder("", {file("BAD", "b"), file("GOOD")})).failOn(Asked::Facts, 1);
    rig.scan(options("cancel"));
    EXPECT_EQ(rig.watcher.prompts, 1);
    EXPECT_EQ(rig.count("files"), 1);
    EXPECT_EQ(rig.watcher.log.back(), "finished");
}

TEST_F(LostDisc, ADamagedDirectoryIsNone) {
    rig.insert(folder("", {folder("BROKEN", {file("SEEN")}).withDamage("cut short"),
                           folder("DEAD").withFailure(ErrorNumber::ReadFailure), file("A")}));
    rig.scan(options());
    EXPECT_NE(rig.errorLog, "");
    EXPECT_EQ(rig.watcher.log.back(), "finished");
}

TEST_F(LostDisc, ADisplayThatRefusesItsValuesIsNone) {
    rig.insert(folder("", {file("A")}));
    rig.quickFiles = 5;
    rig.watcher.atDiscBar = [] { throw base::RuntimeError(base::ErrorNumber::InvalidValue); };
    rig.scan(options());
    EXPECT_EQ(rig.watcher.log.back(), "finished");
}

} // namespace
} // namespace discaro::test
