#include "base/RuntimeError.h"
#include "disc/ImageHelp.h"
#include "disc/drives/DriveTable.h"
#include "disc/drives/Lister.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace discaro::disc {
namespace {

using test::ScratchFolder;

namespace fs = std::filesystem;

// Drives whose devices are image files.
class DriveImages : public testing::Test {
protected:
    void SetUp() override {
        scratch.makeFolder("tree/BIN");
        scratch.write("tree/README.TXT", "read me");
    }

    fs::path makeImage(const std::string& name, const std::string& label) const {
        auto image = scratch.path() / name;
        fs::remove(image);
        const std::string command = "xorriso -as mkisofs -quiet -J -V '" + label + "' -o '" + image.string() + "' '" +
                                    (scratch.path() / "tree").string() + "' 2>/dev/null";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return image;
    }

    DriveTable makeTable() {
        return DriveTable([this] { return computer; });
    }

    ScratchFolder scratch;
    Computer computer;
};

TEST_F(DriveImages, AnUnmountedDriveIsReadFromItsDevice) {
    computer.opticalDrives.push_back({makeImage("device", "IN_DRIVE"), ""});
    const auto table = makeTable();
    const auto facts = table.facts("D:");
    EXPECT_EQ(facts.label, "IN_DRIVE");
    EXPECT_EQ(facts.fileSystem, "CDFS");
    EXPECT_EQ(facts.serial.size(), 9u);
    EXPECT_GT(facts.totalMegabytes, 0);
    EXPECT_EQ(facts.freeMegabytes, 0);
    Lister lister(table);
    lister.setPath("D:\\");
    EXPECT_EQ(lister.list(0), "D:\\BIN");
    EXPECT_EQ(lister.fileLength("D:\\readme.txt"), 7u);
}

TEST_F(DriveImages, AMountedDiscHasTheSameLabelAndSerialAsAnUnmountedOne) {
    const auto device = makeImage("device", "IN_DRIVE");
    computer.opticalDrives.push_back({device, ""});
    const auto table = makeTable();
    const auto unmounted = table.facts("D:");
    computer.mounts.push_back({"11:0", "/", (scratch.path() / "tree").string(), "iso9660", device, true});
    const auto mounted = table.facts("D:");
    EXPECT_EQ(mounted.label, unmounted.label);
    EXPECT_EQ(mounted.serial, unmounted.serial);
    fs::remove(device);
    EXPECT_EQ(table.facts("D:").label, "tree");
}

TEST_F(DriveImages, AMountedImageHasTheLabelOfItsDescriptors) {
    const auto device = makeImage("loop", "LOOPED");
    computer.mounts.push_back({"7:0", "/", (scratch.path() / "tree").string(), "iso9660", device, true});
    const auto table = makeTable();
    EXPECT_EQ(table.shownText('D'), "D: [LOOPED]");
}

TEST_F(DriveImages, ADiscThatIsInsertedLaterIsFound) {
    const auto device = scratch.path() / "device";
    computer.opticalDrives.push_back({device, ""});
    const auto table = makeTable();
    Lister lister(table);
    EXPECT_EQ(table.shownText('D'), "D:\\");
    EXPECT_THROW(lister.setPath("D:\\"), base::RuntimeError);
    makeImage("device", "INSERTED");
    EXPECT_EQ(table.shownText('D'), "D: [INSERTED]");
    lister.setPath("D:\\");
    EXPECT_EQ(lister.listCount(), 1);
}

TEST_F(DriveImages, AnotherDiscInTheDriveIsSeenByAListerThatStaysOpen) {
    const auto device = makeImage("device", "FIRST");
    computer.opticalDrives.push_back({device, ""});
    const auto table = makeTable();
    Lister lister(table);
    lister.setPath("D:\\");
    scratch.makeFolder("tree/SECOND");
    makeImage("device", "SECOND");
    EXPECT_EQ(table.facts("D:").label, "SECOND");
    lister.setPath("D:\\");
    EXPECT_EQ(lister.list(1), "D:\\SECOND");
}

TEST_F(DriveImages, AnAddedImageIsADiscWithItsLetter) {
    auto table = makeTable();
    const auto image = makeImage("disc.iso", "ADDED");
    EXPECT_EQ(table.addImageOrFolder(image), 'D');
    EXPECT_EQ(table.addImageOrFolder(image), 'D');
    EXPECT_EQ(table.type("D:\\"), DriveType::CdRom);
    EXPECT_EQ(table.shownText('D'), "D: [ADDED]");
    EXPECT_EQ(table.addImageOrFolder(makeImage("other.iso", "OTHER")), 'E');
}

TEST_F(DriveImages, AnAddedImageThatChangedIsOpenedAnewUnderItsLetter) {
    auto table = makeTable();
    EXPECT_EQ(table.addImageOrFolder(makeImage("disc.iso", "BEFORE")), 'D');
    const auto before = table.share('D');
    scratch.makeFolder("tree/MORE");
    EXPECT_EQ(table.addImageOrFolder(makeImage("disc.iso", "AFTER")), 'D');
    EXPECT_EQ(table.shownText('D'), "D: [AFTER]");
    EXPECT_NE(table.share('D'), before);
    EXPECT_EQ(before->facts().label, "BEFORE");
}

TEST_F(DriveImages, AnAddedImageThatChangedIsAnotherDiscToWhoeverAsksNext) {
    auto table = makeTable();
    table.addImageOrFolder(makeImage("disc.iso", "BEFORE"));
    const auto before = table.share('D');
    EXPECT_EQ(table.share('D'), before);
    scratch.makeFolder("tree/MORE");
    makeImage("disc.iso", "AFTER");
    EXPECT_EQ(table.facts("D:").label, "AFTER");
    EXPECT_NE(table.share('D'), before);
    EXPECT_EQ(before->facts().label, "BEFORE") << "as far as it was read";
}

TEST_F(DriveImages, AnAddedImageThatHasGoneIsMissing) {
    auto table = makeTable();
    const auto image = makeImage("disc.iso", "BEFORE");
    table.addImageOrFolder(image);
    fs::remove(image);
    EXPECT_EQ(table.facts("D:").label, "");
    EXPECT_EQ(test::errorOf([&] { table.share('D'); }), test::numberOf(base::ErrorNumber::PathMissing));
}

TEST_F(DriveImages, AnAddedImageThatBecameSomethingElseKeepsItsLetter) {
    auto table = makeTable();
    const auto image = makeImage("disc.iso", "BEFORE");
    EXPECT_EQ(table.addImageOrFolder(image), 'D');
    fs::remove(image);
    scratch.write("disc.iso", "no disc image any more");
    EXPECT_THROW(table.addImageOrFolder(image), base::RuntimeError);
    EXPECT_EQ(table.letters(), "CD");
}

TEST_F(DriveImages, TheDeviceOfADriveIsThatDrive) {
    const auto device = makeImage("device", "IN_DRIVE");
    computer.opticalDrives.push_back({fs::canonical(device), ""});
    auto table = makeTable();
    EXPECT_EQ(table.addImageOrFolder(device), 'D');
    EXPECT_EQ(table.letters(), "CD");
}

} // namespace
} // namespace discaro::disc
