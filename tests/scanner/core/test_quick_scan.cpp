#include "app/Module1.h"
#include "disc/image/OpenImage.h"
#include "scanner/NameChecks.h"
#include "scanner/QuickScan.h"
#include "scanner/Texts.h"
#include "scanner/core/ScanRig.h"
#include "support/BufferSource.h"
#include "support/Files.h"
#include "support/IsoBuilder.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace discaro;
using namespace discaro::test;
using scanner::duplicateSerialsPassed;
using scanner::takenNameMessage;

namespace {

scanner::QuickScan counted(ScanRig& rig) {
    scanner::QuickScan quick(rig.lister);
    quick.begin(rig.letter);
    EXPECT_TRUE(quick.countBelow([](const std::string&) { return true; }));
    return quick;
}

// A folder with A, B and C in it, in the folder of the rig.
std::filesystem::path makeThreeDirectories() {
    auto path = app::Module1::ApplicationPath / "disc";
    for (const char* name : {"A", "B", "C"})
        std::filesystem::create_directories(path / name);
    return path;
}

} // namespace

TEST(QuickScan, LeavesTheRootOutOfTheDirectoriesAndCountsItsFiles) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), folder("S", {file("B"), folder("T")}), folder("U", {file("C")})}));
    const auto quick = counted(rig);
    EXPECT_EQ(quick.directories(), 3);
    EXPECT_EQ(quick.files(), 3);
    EXPECT_EQ(quick.text(), "3 Directories\r\n3 Files");
}

TEST(QuickScan, ADiscWithoutSubdirectoriesHasNone) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), file("B")}));
    EXPECT_EQ(counted(rig).text(), "0 Directories\r\n2 Files");
}

TEST(QuickScan, CountsAfreshEachTime) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), folder("S")}));
    scanner::QuickScan quick(rig.lister);
    for (int pass = 0; pass < 2; ++pass) {
        quick.begin(rig.letter);
        quick.countBelow([](const std::string&) { return true; });
    }
    EXPECT_EQ(quick.directories(), 1);
    EXPECT_EQ(quick.files(), 1);
}

TEST(QuickScan, ShowsEachDirectoryAfterThoseBeneathItAndEndsAtTheRoot) {
    ScanRig rig;
    rig.insert(folder("", {folder("A", {folder("B")})}));
    std::vector<std::string> shown;
    scanner::QuickScan quick(rig.lister);
    quick.begin(rig.letter);
    quick.countBelow([&](const std::string& path) {
        shown.push_back(path);
        return true;
    });
    EXPECT_EQ(shown, (std::vector<std::string>{rig.root + "A\\B", rig.root + "A", rig.root}));
    EXPECT_EQ(rig.lister.path(), rig.root);
}

TEST(QuickScan, OpensAndInspectsNoFile) {
    ScanRig rig;
    auto& medium = rig.insert(folder("", {file("A"), folder("S", {file("B")})}));
    counted(rig);
    EXPECT_EQ(medium.calls(Asked::Open) + medium.calls(Asked::Facts), 0);
}

TEST(QuickScan, ADriveThatCannotBeReadThrowsAtOnce) {
    ScanRig rig;
    rig.insert(folder("")).vanishAfter(0);
    scanner::QuickScan quick(rig.lister);
    EXPECT_THROW(quick.begin(rig.letter), base::RuntimeError);
}

TEST(QuickScan, ADiscThatLeavesWhileItIsCountedThrows) {
    ScanRig rig;
    auto& medium = rig.insert(folder("", {folder("A"), folder("B")}));
    scanner::QuickScan quick(rig.lister);
    quick.begin(rig.letter);
    const auto takeOut = [&](const std::string&) {
        medium.vanishAfter(0);
        return true;
    };
    EXPECT_THROW(quick.countBelow(takeOut), base::RuntimeError);
}

TEST(QuickScan, AFolderThatIsRemovedWhileItIsCountedThrows) {
    ScanRig rig;
    const auto path = makeThreeDirectories();
    rig.letter = rig.drives.addImageOrFolder(path);
    scanner::QuickScan quick(rig.lister);
    quick.begin(rig.letter);
    const auto remove = [&](const std::string&) {
        std::filesystem::remove_all(path);
        return true;
    };
    EXPECT_THROW(quick.countBelow(remove), base::RuntimeError);
}

TEST(QuickScan, AnUnmountedDiscThatIsGoneInADirectoryEndsTheCountThere) {
    auto image = plainIso({isoDirectory("A", 22), isoDirectory("B", 23), isoDirectory("C", 24)});
    for (const uint32_t sector : {22U, 23U, 24U})
        image.directory(sector, 20, {isoFile("IN.;1")});
    ScanRig rig;
    const auto bytes = std::make_shared<BufferSource>(image.image());
    rig.letter = rig.drives.addMedium(disc::openMedium({bytes, {0}}));
    scanner::QuickScan quick(rig.lister);
    quick.begin(rig.letter);
    const auto takeOut = [&](const std::string& path) {
        EXPECT_TRUE(path.ends_with("\\A")) << path;
        bytes->failFrom(0, base::ErrorNumber::DriveNotReady);
        return true;
    };
    try {
        quick.countBelow(takeOut);
        ADD_FAILURE() << "counted to its end";
    } catch (const base::RuntimeError& error) {
        EXPECT_TRUE(error.is(base::ErrorNumber::DriveNotReady)) << error.description();
    }
}

// What is in the drive is held by the count itself, and says only of each directory that it is missing.
TEST(QuickScan, AMountedDiscThatIsTakenAwayWhileItIsCountedThrows) {
    const ScanRig rig;
    const auto path = makeThreeDirectories();
    const disc::DriveTable drives([&path] {
        disc::Computer computer;
        computer.mounts.push_back({"8:1", "/", "/", "ext4", "/dev/sda1", false});
        computer.mounts.push_back({"11:0", "/", path.string(), "iso9660", "disc", true});
        return computer;
    });
    disc::Lister lister(drives);
    scanner::QuickScan quick(lister);
    quick.begin('D');
    const auto takeAway = [&](const std::string&) {
        std::filesystem::remove_all(path);
        return true;
    };
    EXPECT_THROW(quick.countBelow(takeAway), base::RuntimeError);
}

TEST(QuickScan, AFolderThatLosesADirectoryWhileItIsCountedIsCountedToItsEnd) {
    ScanRig rig;
    const auto path = makeThreeDirectories();
    rig.letter = rig.drives.addImageOrFolder(path);
    scanner::QuickScan quick(rig.lister);
    quick.begin(rig.letter);
    EXPECT_TRUE(quick.countBelow([&](const std::string&) {
        std::filesystem::remove_all(path / "B");
        return true;
    }));
    EXPECT_EQ(quick.text(), "3 Directories\r\n0 Files");
    EXPECT_EQ(rig.lister.path(), disc::DriveTable::rootText(rig.letter));
}

TEST(QuickScan, ADamagedDirectoryIsCountedAsFarAsItCanBeRead) {
    ScanRig rig;
    rig.insert(folder("", {folder("BAD", {file("A")}).withDamage("cut short"),
                           folder("WORSE").withFailure(ErrorNumber::ReadFailure)}));
    EXPECT_EQ(counted(rig).text(), "2 Directories\r\n1 Files");
}

TEST(QuickScan, ADamagedRootIsCountedAsFarAsItCanBeRead) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), file("B")}).withDamage("cut short"));
    EXPECT_EQ(counted(rig).text(), "0 Directories\r\n2 Files");
}

TEST(QuickScan, ADamagedRootOfAnImageIsCountedAsFarAsItCanBeRead) {
    std::vector<IsoEntry> entries = {isoDirectory("BEYOND", 30)};
    for (int i = 0; i < 200; ++i)
        entries.push_back(isoFile("FILE" + std::to_string(1000 + i) + ".;1"));
    ScanRig rig;
    const auto path = app::Module1::ApplicationPath / "cut.iso";
    writeFile(path, plainIso(entries).image().substr(0, 22 * 2048));
    rig.letter = rig.drives.addImageOrFolder(path);
    const auto quick = counted(rig);
    EXPECT_EQ(quick.directories(), 1);
    EXPECT_GT(quick.files(), 60);
    EXPECT_LT(quick.files(), 200);
    EXPECT_EQ(quick.damagedDirectories(), 2);
}

TEST(QuickScan, AnImageThatLosesItsRootBeforeItIsCountedThrows) {
    ScanRig rig;
    const auto path = app::Module1::ApplicationPath / "disc.iso";
    writeFile(path, plainIso({isoFile("A.;1")}).image());
    rig.letter = rig.drives.addImageOrFolder(path);
    std::filesystem::resize_file(path, 20 * 2048);
    scanner::QuickScan quick(rig.lister);
    EXPECT_THROW(quick.begin(rig.letter), base::RuntimeError);
}

TEST(QuickScan, ARootOfWhichNothingCanBeReadThrows) {
    ScanRig rig;
    rig.insert(folder("").withDamage("cut short"));
    scanner::QuickScan quick(rig.lister);
    EXPECT_THROW(quick.begin(rig.letter), base::RuntimeError);
}

TEST(QuickScan, EndsWhenItIsToldTo) {
    ScanRig rig;
    rig.insert(folder("", {folder("A"), folder("B")}));
    scanner::QuickScan quick(rig.lister);
    quick.begin(rig.letter);
    EXPECT_FALSE(quick.countBelow([](const std::string&) { return false; }));
    EXPECT_EQ(quick.directories(), 1);
}

TEST(NameChecks, AnEqualNameIsFoundWithItsNumberAndLabel) {
    ScanRig rig;
    rig.insert(folder(""));
    rig.scan({}, "Games");
    EXPECT_EQ(takenNameMessage(rig.discs.Recordset(), "Games"),
              "This Preferred name was used once before for CD-ROM number  '1' which has 'MEMORY' "
              "as its Volume "
              "label. Please choose another name.");
}

TEST(NameChecks, OtherLetterCaseIsAnotherName) {
    ScanRig rig;
    rig.insert(folder(""));
    rig.scan({}, "Games");
    EXPECT_EQ(takenNameMessage(rig.discs.Recordset(), "GAMES"), std::nullopt);
}

TEST(NameChecks, AnEmptyCatalogueHasNeitherNamesNorSerials) {
    ScanRig rig;
    EXPECT_EQ(takenNameMessage(rig.discs.Recordset(), "x"), std::nullopt);
    EXPECT_TRUE(duplicateSerialsPassed(rig.discs.Recordset(), "0123-4567", [](const std::string&) {
        ADD_FAILURE() << "nothing to ask about";
        return false;
    }));
}

TEST(NameChecks, EachDiscOfTheSerialIsAskedAboutUntilOneIsRefused) {
    ScanRig rig;
    rig.insert(folder(""));
    rig.scan({}, "One");
    rig.scan({}, "Two");
    rig.scan({}, "Three");
    std::vector<std::string> asked;
    EXPECT_FALSE(duplicateSerialsPassed(rig.discs.Recordset(), "0123-4567", [&](const std::string& text) {
        asked.push_back(text);
        return asked.size() < 2;
    }));
    ASSERT_EQ(asked.size(), 2U);
    EXPECT_EQ(asked[0], "The CD-ROM named  'One'  has the same serial number as this CD-ROM. You may have scanned "
                        "it once before. Press Cancel to terminate this scan or press OK to ignore this fact and "
                        "continue.");
    EXPECT_TRUE(duplicateSerialsPassed(rig.discs.Recordset(), "0123-4567", [](const std::string&) { return true; }));
}

TEST(NameChecks, ADiscWhoseSerialIsUnknownIsLikeNoOtherNorLikeOneWithoutASerial) {
    ScanRig rig;
    db::Recordset& discs = rig.discs.Recordset();
    discs.AddNew();
    discs("prefered name") = "Unknown";
    discs.Update();
    discs.AddNew();
    discs("prefered name") = "Empty";
    discs("serial number") = "";
    discs.Update();
    std::string asked;
    EXPECT_TRUE(duplicateSerialsPassed(discs, "", [&](const std::string& text) {
        asked += text;
        return true;
    }));
    EXPECT_EQ(asked.find("'Unknown'"), std::string::npos) << asked;
    EXPECT_NE(asked.find("'Empty'"), std::string::npos) << asked;
}

TEST(FileExists, IsFalseOnlyForAMissingFileInAFolderThatIsThere) {
    ScanRig rig;
    rig.insert(
        folder("", {file("autorun.inf"), folder("SUB"), folder("BAD").withFailure(base::ErrorNumber::ReadFailure)}));
    EXPECT_TRUE(app::Module1::FileExists(rig.root + "AUTORUN.INF", rig.drives));
    EXPECT_FALSE(app::Module1::FileExists(rig.root + "other.inf", rig.drives));
    EXPECT_TRUE(app::Module1::FileExists(rig.root + "NOWHERE\\other.inf", rig.drives));
    EXPECT_TRUE(app::Module1::FileExists(rig.root + "sub", rig.drives)) << "a directory";
    EXPECT_TRUE(app::Module1::FileExists(rig.root + "SUB\\", rig.drives));
    EXPECT_TRUE(app::Module1::FileExists(rig.root, rig.drives));
    EXPECT_FALSE(app::Module1::FileExists(rig.root + "SUB\\other", rig.drives));
    EXPECT_TRUE(app::Module1::FileExists(rig.root + "BAD\\other", rig.drives)) << "can't be known";
    const auto here = app::Module1::ApplicationPath;
    EXPECT_TRUE(app::Module1::FileExists((here / "kvt.mde").string()));
    EXPECT_FALSE(app::Module1::FileExists((here / "kvt.bak").string()));
    EXPECT_TRUE(app::Module1::FileExists((here / "missing" / "kvt.bak").string()));
}
