#include "disc/ImageHelp.h"
#include "disc/drives/DriveTable.h"
#include "disc/folder/FolderMedium.h"
#include "support/MemoryMedium.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <string>

namespace discaro::disc {
namespace {

using base::ErrorNumber;
using test::errorOf;
using test::file;
using test::folder;
using test::MemoryMedium;
using test::numberOf;
using test::ScratchFolder;

namespace fs = std::filesystem;

std::unique_ptr<MemoryMedium> memoryDisc() {
    return std::make_unique<MemoryMedium>(folder("", {file("README.TXT", "hello")}));
}

// A table on a computer that a test makes up, and may change.
class DriveTableTest : public testing::Test {
protected:
    void SetUp() override { computer.mounts.push_back({"8:1", "/", "/", "ext4", "/dev/sda1", false}); }

    void addMount(const fs::path& point, const std::string& type, const std::string& source = "none",
                  const std::string& number = "7:0") {
        computer.mounts.push_back({number, "/", point.string(), type, source, true});
    }
    void addOpticalDrive(const std::string& device = "/dev/no-such-drive") {
        computer.opticalDrives.push_back({device, ""});
    }
    DriveTable makeTable() {
        return DriveTable([this] { return computer; });
    }

    Computer computer;
    ScratchFolder scratch;
};

TEST_F(DriveTableTest, TheRootFileSystemIsCAndFixed) {
    const auto table = makeTable();
    EXPECT_EQ(table.letters(), "C");
    EXPECT_EQ(table.type("C:\\"), DriveType::Fixed);
    const auto facts = table.facts("C:");
    EXPECT_EQ(facts.root, "C:\\");
    EXPECT_EQ(facts.type, DriveType::Fixed);
    EXPECT_GT(facts.totalMegabytes, 0);
    EXPECT_EQ(table.shownText('C'), "C:\\");
}

TEST_F(DriveTableTest, LettersFollowTheOrderOfTheKinds) {
    addMount(scratch.makeFolder("SHARE"), "nfs", "server:/share", "0:50");
    addMount(scratch.makeFolder("STICK"), "vfat", "/dev/sdb1", "8:17");
    addMount(scratch.makeFolder("IMAGE"), "iso9660", "/dev/no-such-loop", "7:0");
    computer.removable.insert("/dev/sdb1");
    addOpticalDrive();
    auto table = makeTable();
    EXPECT_EQ(table.letters(), "CDEFG");
    EXPECT_EQ(table.type("D:\\"), DriveType::CdRom);
    EXPECT_EQ(table.type("E:\\"), DriveType::CdRom);
    EXPECT_EQ(table.type("F:\\"), DriveType::Removable);
    EXPECT_EQ(table.type("G:\\"), DriveType::Network);
    EXPECT_EQ(table.addMedium(memoryDisc()), 'H');
    EXPECT_EQ(table.letters(), "CDEFGH");
}

TEST_F(DriveTableTest, TypesAreAskedByTheFirstCharacterInAnyCase) {
    addOpticalDrive();
    const auto table = makeTable();
    for (const auto* text : {"D", "d", "D:", "d:\\", "D:\\A\\B", "d: [LABEL]"})
        EXPECT_EQ(table.type(text), DriveType::CdRom) << text;
    for (const auto* text : {"", "Z:\\", "1:", ":", "\\", "\xE9"})
        EXPECT_EQ(table.type(text), DriveType::NoRoot) << text;
    EXPECT_EQ(static_cast<int>(DriveType::CdRom), 5);
}

TEST_F(DriveTableTest, AnEmptyDriveHasEmptyFactsAndItsType) {
    addOpticalDrive();
    const auto table = makeTable();
    const auto facts = table.facts("D:");
    EXPECT_EQ(facts.root, "D:\\");
    EXPECT_EQ(facts.type, DriveType::CdRom);
    EXPECT_EQ(facts.label + facts.serial + facts.fileSystem, "");
    EXPECT_EQ(facts.totalMegabytes, 0);
    EXPECT_EQ(facts.freeMegabytes, 0);
    EXPECT_EQ(table.shownText('D'), "D:\\");
    EXPECT_EQ(errorOf([&] { table.share('D'); }), numberOf(ErrorNumber::DriveNotReady));
}

TEST_F(DriveTableTest, AMountThatVanishedIsNotReady) {
    const auto point = scratch.makeFolder("IMAGE");
    addMount(point, "iso9660");
    const auto table = makeTable();
    EXPECT_EQ(table.facts("D:").label, "IMAGE");
    fs::remove(point);
    EXPECT_EQ(table.facts("D:").label, "");
    EXPECT_EQ(errorOf([&] { table.share('D'); }), numberOf(ErrorNumber::DriveNotReady));
}

TEST_F(DriveTableTest, AnUnknownDriveIsMissing) {
    const auto table = makeTable();
    EXPECT_EQ(errorOf([&] { table.share('Q'); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { table.share('\0'); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { table.facts("Q:"); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { table.facts(""); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { table.shownText('Q'); }), numberOf(ErrorNumber::PathMissing));
}

TEST_F(DriveTableTest, AMountedDiscIsReadAtItsMountPoint) {
    scratch.makeFolder("DISC_7");
    scratch.write("DISC_7/INSIDE.TXT");
    addMount(scratch.path() / "DISC_7", "udf");
    const auto table = makeTable();
    const auto medium = table.share('D');
    EXPECT_EQ(medium->list(medium->root(), medium->root()).files.at(0).name, "INSIDE.TXT");
    EXPECT_EQ(table.shownText('d'), "D: [DISC_7]");
    EXPECT_EQ(table.facts("D:").serial.size(), 9u);
}

TEST_F(DriveTableTest, FactsOfAnAddedMediumAreInMegabytes) {
    auto table = makeTable();
    auto disc = memoryDisc();
    disc->volume = {"BACKUP 3", "CDFS", "12AB-34CD", 3 * 1048576 / 2, 524288};
    EXPECT_EQ(table.addMedium(std::move(disc)), 'D');
    const auto facts = table.facts("d: [BACKUP 3]");
    EXPECT_EQ(facts.root, "D:\\");
    EXPECT_EQ(facts.label, "BACKUP 3");
    EXPECT_EQ(facts.serial, "12AB-34CD");
    EXPECT_EQ(facts.fileSystem, "CDFS");
    EXPECT_EQ(facts.totalMegabytes, 1.5);
    EXPECT_EQ(facts.freeMegabytes, 0.5);
    EXPECT_EQ(table.shownText('D'), "D: [BACKUP 3]");
}

TEST_F(DriveTableTest, FactsOfAMediumThatFailsAreEmpty) {
    auto table = makeTable();
    auto disc = memoryDisc();
    disc->vanishAfter(0);
    table.addMedium(std::move(disc));
    EXPECT_EQ(table.facts("D:").label, "");
    EXPECT_EQ(table.facts("D:").type, DriveType::CdRom);
    EXPECT_EQ(table.shownText('D'), "D:\\");
}

TEST_F(DriveTableTest, MediaMayHaveAnotherType) {
    auto table = makeTable();
    EXPECT_EQ(table.addMedium(memoryDisc(), DriveType::Removable), 'D');
    EXPECT_EQ(table.type("D:\\"), DriveType::Removable);
    EXPECT_EQ(table.facts("D:").type, DriveType::Removable);
}

TEST_F(DriveTableTest, AnAddedFolderIsADiscWithNothingFree) {
    auto table = makeTable();
    const char letter = table.addImageOrFolder(scratch.makeFolder("My Disc"));
    EXPECT_EQ(letter, 'D');
    const auto facts = table.facts("D:");
    EXPECT_EQ(facts.type, DriveType::CdRom);
    EXPECT_EQ(facts.label, "My Disc");
    EXPECT_EQ(facts.freeMegabytes, 0);
    EXPECT_TRUE(facts.isFolder);
    EXPECT_EQ(facts.totalMegabytes, 0) << "only a walk tells";
    EXPECT_EQ(table.shownText('D'), "D: [My Disc]");
}

TEST_F(DriveTableTest, TheSamePathAgainGivesTheSameLetter) {
    auto table = makeTable();
    const auto path = scratch.makeFolder("disc");
    scratch.makeFolder("other");
    fs::create_directory_symlink(path, scratch.path() / "link");
    EXPECT_EQ(table.addImageOrFolder(path), 'D');
    EXPECT_EQ(table.addImageOrFolder(scratch.path() / "other"), 'E');
    EXPECT_EQ(table.addImageOrFolder(path), 'D');
    EXPECT_EQ(table.addImageOrFolder(path.string() + "/"), 'D');
    EXPECT_EQ(table.addImageOrFolder(scratch.path() / "other" / ".." / "disc"), 'D');
    EXPECT_EQ(table.addImageOrFolder(scratch.path() / "link"), 'D');
    EXPECT_EQ(table.letters(), "CDE");
}

TEST_F(DriveTableTest, AddingAMountedDiscGivesTheLetterThatItHas) {
    const auto disc = scratch.makeFolder("DISC");
    const auto stick = scratch.makeFolder("STICK");
    addMount(disc, "iso9660");
    addMount(stick, "vfat", "/dev/sdb1", "8:17");
    computer.removable.insert("/dev/sdb1");
    auto table = makeTable();
    EXPECT_EQ(table.addImageOrFolder(disc), 'D');
    EXPECT_EQ(table.addImageOrFolder(stick),
              'F'); // a folder of a removable disk stands for a disc of its own
    EXPECT_EQ(table.type("E:"), DriveType::Removable);
    EXPECT_EQ(table.type("F:"), DriveType::CdRom);
}

TEST_F(DriveTableTest, WhatCannotBeAddedChangesNothing) {
    auto table = makeTable();
    ASSERT_EQ(::mkfifo((scratch.path() / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(errorOf([&] { table.addImageOrFolder(scratch.path() / "nowhere"); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { table.addImageOrFolder(""); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { table.addImageOrFolder(scratch.path() / "pipe"); }),
              numberOf(ErrorNumber::FileSystemUnknown));
    EXPECT_EQ(errorOf([&] { table.addImageOrFolder("/dev/null"); }), numberOf(ErrorNumber::FileSystemUnknown));
    EXPECT_EQ(errorOf([&] { table.addImageOrFolder(scratch.write("no-image.iso", "not a disc image")); }),
              numberOf(ErrorNumber::FileSystemUnknown));
    EXPECT_EQ(table.letters(), "C");
}

TEST_F(DriveTableTest, WhatCannotBeFoundIsToldByItsPath) {
    auto table = makeTable();
    const auto folder = scratch.makeFolder("going");
    const auto told = [](auto&& statement) {
        try {
            statement();
        } catch (const base::RuntimeError& error) {
            return error.description();
        }
        return std::string("no error");
    };
    const auto nowhere = scratch.path() / "nowhere";
    EXPECT_EQ(told([&] { table.addImageOrFolder(nowhere); }), "The path was not found: " + nowhere.string());
    const char letter = table.addImageOrFolder(folder);
    fs::remove(folder);
    EXPECT_EQ(told([&] { table.share(letter); }), "The path was not found: " + folder.string());
}

TEST_F(DriveTableTest, LettersEndAtZ) {
    auto table = makeTable();
    const auto first = scratch.makeFolder("first");
    EXPECT_EQ(table.addImageOrFolder(first), 'D');
    for (char letter = 'E'; letter <= 'Z'; ++letter)
        EXPECT_EQ(table.addMedium(memoryDisc()), letter);
    EXPECT_EQ(table.letters(), "CDEFGHIJKLMNOPQRSTUVWXYZ");
    EXPECT_EQ(errorOf([&] { table.addMedium(memoryDisc()); }), numberOf(ErrorNumber::TooManyDrives));
    EXPECT_EQ(table.addImageOrFolder(first), 'D');
}

TEST_F(DriveTableTest, WhenAllLettersAreGivenTheOneAskedForLongestAgoIsGivenAgain) {
    auto table = makeTable();
    for (char letter = 'D'; letter <= 'Z'; ++letter)
        EXPECT_EQ(table.addImageOrFolder(scratch.makeFolder(std::string(1, letter))), letter);
    EXPECT_EQ(table.addImageOrFolder(scratch.makeFolder("D")), 'D') << "known, and now the latest";
    const auto held = table.share('E');
    EXPECT_EQ(table.addImageOrFolder(scratch.makeFolder("MORE")), 'E');
    EXPECT_EQ(table.facts("E:").label, "MORE");
    EXPECT_EQ(held->facts().label, "E") << "who holds the old disc keeps it";
    EXPECT_EQ(table.addImageOrFolder(scratch.makeFolder("STILL MORE")), 'F');
}

TEST_F(DriveTableTest, AskingForWhatCantBeReadAnyMoreDoesNotKeepItsLetter) {
    auto table = makeTable();
    for (char letter = 'D'; letter <= 'Z'; ++letter)
        table.addImageOrFolder(scratch.makeFolder(std::string(1, letter)));
    std::filesystem::remove(scratch.path() / "D");
    const auto instead = scratch.write("D", "no disc image");
    EXPECT_THROW(table.addImageOrFolder(instead), base::RuntimeError);
    EXPECT_EQ(table.addImageOrFolder(scratch.makeFolder("MORE")), 'D');
}

TEST_F(DriveTableTest, LettersOfTheComputersDrivesAreNotGivenAgain) {
    for (int i = 0; i < 40; ++i)
        addOpticalDrive("/dev/sr" + std::to_string(i));
    auto table = makeTable();
    EXPECT_EQ(errorOf([&] { table.addImageOrFolder(scratch.makeFolder("MORE")); }),
              numberOf(ErrorNumber::TooManyDrives));
    EXPECT_EQ(table.letters().size(), 24u);
}

TEST_F(DriveTableTest, DrivesOfTheComputerBeyondZAreLeftOut) {
    for (int i = 0; i < 40; ++i)
        addOpticalDrive("/dev/sr" + std::to_string(i));
    auto table = makeTable();
    EXPECT_EQ(table.letters().size(), 24u);
    table.refresh();
    EXPECT_EQ(table.letters().back(), 'Z');
}

TEST_F(DriveTableTest, RefreshingKeepsWhatTheUserAdded) {
    auto table = makeTable();
    EXPECT_EQ(table.addMedium(memoryDisc()), 'D');
    addOpticalDrive();
    addMount(scratch.makeFolder("IMAGE"), "iso9660");
    table.refresh();
    EXPECT_EQ(table.letters(), "CDEF");
    EXPECT_EQ(table.facts("D:").label, "MEMORY");
    EXPECT_EQ(table.facts("E:").label, "");
    EXPECT_EQ(table.facts("F:").label, "IMAGE");
}

TEST_F(DriveTableTest, RefreshingTakesWhatIsGoneAndLeavesTheOtherLetters) {
    addMount(scratch.makeFolder("ONE"), "iso9660", "none", "7:1");
    addMount(scratch.makeFolder("TWO"), "iso9660", "none", "7:2");
    auto table = makeTable();
    EXPECT_EQ(table.addMedium(memoryDisc()), 'F');
    computer.mounts.erase(computer.mounts.begin() + 1);
    table.refresh();
    EXPECT_EQ(table.letters(), "CEF");
    EXPECT_EQ(table.facts("E:").label, "TWO");
    EXPECT_EQ(table.type("D:"), DriveType::NoRoot);
    addMount(scratch.makeFolder("NEW"), "udf", "none", "7:3");
    table.refresh();
    EXPECT_EQ(table.letters(), "CDEF");
    EXPECT_EQ(table.facts("D:").label, "NEW");
    EXPECT_EQ(table.facts("F:").label, "MEMORY");
}

TEST_F(DriveTableTest, ADiscThatIsMountedLaterIsFoundInItsDrive) {
    addOpticalDrive("/dev/no-such-drive");
    const auto table = makeTable();
    EXPECT_EQ(table.facts("D:").label, "");
    addMount(scratch.makeFolder("INSERTED"), "iso9660", "/dev/no-such-drive");
    EXPECT_EQ(table.facts("D:").label, "INSERTED");
    EXPECT_NO_THROW(table.share('D'));
}

TEST_F(DriveTableTest, AnotherDiscInTheDriveIsAnotherMedium) {
    addOpticalDrive("/dev/no-such-drive");
    addMount(scratch.makeFolder("FIRST"), "iso9660", "/dev/no-such-drive");
    const auto table = makeTable();
    const auto first = table.share('D');
    EXPECT_EQ(table.facts("D:").label, "FIRST");
    EXPECT_EQ(table.share('D'), first);
    computer.mounts.back().point = scratch.makeFolder("SECOND").string();
    EXPECT_EQ(table.facts("D:").label, "SECOND");
    const auto second = table.share('D');
    EXPECT_NE(second, first);
    EXPECT_EQ(first->facts().label, "FIRST");
    EXPECT_EQ(second->facts().label, "SECOND");
}

TEST_F(DriveTableTest, AMediumOfTheComputerIsClosedWhenNobodyKeepsIt) {
    addMount(scratch.makeFolder("DISC"), "iso9660");
    const auto table = makeTable();
    std::weak_ptr<const Medium> watched = table.share('D');
    EXPECT_TRUE(watched.expired());
    auto kept = table.share('D');
    EXPECT_EQ(table.share('D'), kept);
    watched = kept;
    kept.reset();
    EXPECT_TRUE(watched.expired());
}

TEST_F(DriveTableTest, AnAddedMediumStaysOpen) {
    auto table = makeTable();
    auto disc = memoryDisc();
    const auto* address = disc.get();
    table.addMedium(std::move(disc));
    table.refresh();
    EXPECT_EQ(table.share('d').get(), address);
}

TEST_F(DriveTableTest, ANetworkShareIsShownWithoutBeingTouched) {
    addMount(scratch.path() / "SHARE", "nfs", "server:/share"); // which isn't there
    const auto table = makeTable();
    EXPECT_EQ(table.shownText('D'), "D: [SHARE]");
    EXPECT_EQ(table.facts("D:").label, "");
}

TEST(DriveTable, TheProcessHasOne) {
    EXPECT_EQ(&driveTable(), &driveTable());
    EXPECT_EQ(driveTable().letters().front(), 'C');
    EXPECT_EQ(driveTable().type("C:\\"), DriveType::Fixed);
}

} // namespace
} // namespace discaro::disc
