#include "disc/drives/ComputerDrives.h"
#include "disc/system/MountTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

namespace discaro::disc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> pointsOf(const std::vector<Mount>& mounts) {
    std::vector<std::string> points;
    std::ranges::transform(mounts, std::back_inserter(points), &Mount::point);
    return points;
}

// "type point device" of each drive, for short comparisons.
std::vector<std::string> drivesIn(const std::string& mounts, std::vector<OpticalDrive> opticalDrives = {},
                                  std::set<std::string> removable = {}) {
    const std::string root = "1 0 8:1 / / rw - ext4 /dev/sda1 rw\n";
    std::vector<std::string> drives;
    for (const auto& drive : drivesOf({parseMountInfo(root + mounts), std::move(opticalDrives), std::move(removable)}))
        drives.push_back(std::to_string(static_cast<int>(drive.type)) + " " + drive.point + " " + drive.device);
    return drives;
}

TEST(MountInfo, HasAllFieldsOfALine) {
    const auto mounts = parseMountInfo("36 35 11:0 / /media/user/DISC ro,nosuid,nodev shared:1 "
                                       "master:2 - iso9660 /dev/sr0 ro,iocharset=utf8\n");
    ASSERT_EQ(mounts.size(), 1u);
    EXPECT_EQ(mounts[0].number, "11:0");
    EXPECT_EQ(mounts[0].directory, "/");
    EXPECT_EQ(mounts[0].point, "/media/user/DISC");
    EXPECT_EQ(mounts[0].type, "iso9660");
    EXPECT_EQ(mounts[0].source, "/dev/sr0");
    EXPECT_TRUE(mounts[0].readOnly);
}

TEST(MountInfo, ReadOnlyComesFromTheMountOrTheFileSystem) {
    const auto mounts = parseMountInfo("1 0 8:1 / /a rw,noatime - ext4 /dev/sda1 ro\n"
                                       "2 0 8:2 / /b ro - ext4 /dev/sda2 rw\n"
                                       "3 0 8:3 / /c rw,errors=remount-ro - ext4 /dev/sda3 rw\n");
    ASSERT_EQ(mounts.size(), 3u);
    EXPECT_TRUE(mounts[0].readOnly);
    EXPECT_TRUE(mounts[1].readOnly);
    EXPECT_FALSE(mounts[2].readOnly);
}

TEST(MountInfo, UnescapesPathsOfAnyBytes) {
    const auto mounts = parseMountInfo("1 0 8:1 / /media/MY\\040DISC\\0111\\134x\\012y rw - vfat /dev/a\\040b rw\n"
                                       "2 0 8:2 / /caf\xE9 rw - vfat none rw\n"
                                       "3 0 8:3 / /odd\\9\\77\\400\\ rw - vfat none rw\n");
    ASSERT_EQ(mounts.size(), 3u);
    EXPECT_EQ(mounts[0].point, "/media/MY DISC\t1\\x\ny");
    EXPECT_EQ(mounts[0].source, "/dev/a b");
    EXPECT_EQ(mounts[1].point, "/caf\xE9");
    EXPECT_EQ(mounts[2].point, "/odd\\9\\77\\400\\");
}

TEST(MountInfo, PassesOverLinesOfAnotherForm) {
    EXPECT_THAT(parseMountInfo(""), IsEmpty());
    EXPECT_THAT(parseMountInfo("\n\n  \n"), IsEmpty());
    EXPECT_THAT(parseMountInfo("1 2 3\n1 2 8:1 / /x rw\n1 2 8:1 / /x rw - \n1 2 8:1 / /x rw - ext4\n-\n"), IsEmpty());
    EXPECT_THAT(pointsOf(parseMountInfo("rubbish\n1 0 8:1 / /x rw - ext4 /dev/sda1")), ElementsAre("/x"));
}

TEST(MountInfo, LeavesOutWhatAnotherMountAtTheSamePlaceHides) {
    const auto mounts = parseMountInfo("25 24 0:23 / /mnt rw - tmpfs first rw\n"
                                       "30 25 0:27 / /mnt rw - tmpfs second rw\n"
                                       "31 30 0:28 / /mnt/inner rw - tmpfs third rw\n");
    ASSERT_THAT(pointsOf(mounts), ElementsAre("/mnt", "/mnt/inner"));
    EXPECT_EQ(mounts[0].source, "second");
}

TEST(MountInfo, AMountThatNamesItselfAsItsParentStays) {
    EXPECT_THAT(pointsOf(parseMountInfo("1 1 0:1 / / rw - rootfs rootfs rw\n")), ElementsAre("/"));
}

TEST(MountOf, IsTheInnermostMountThatHoldsThePath) {
    const auto mounts = parseMountInfo("1 0 8:1 / / rw - ext4 a rw\n"
                                       "2 1 8:2 / /media/x rw - ext4 b rw\n"
                                       "3 2 8:3 / /media/x/y rw - ext4 c rw\n");
    EXPECT_EQ(mountOf(mounts, "/media/x/y/z")->source, "c");
    EXPECT_EQ(mountOf(mounts, "/media/x/y")->source, "c");
    EXPECT_EQ(mountOf(mounts, "/media/x/yy")->source, "b");
    EXPECT_EQ(mountOf(mounts, "/media/xx")->source, "a");
    EXPECT_EQ(mountOf(mounts, "/")->source, "a");
    EXPECT_EQ(mountOf(mounts, ""), nullptr);
    EXPECT_EQ(mountOf({}, "/x"), nullptr);
}

TEST(DriveNames, AreInTheOrderOfTheirNumbers) {
    EXPECT_THAT(parseDriveNames("CD-ROM information, Id: cdrom.c 3.20 2003/12/17\n\n"
                                "drive name:\t\tsr10\tsr2\tsr0\n"
                                "drive speed:\t\t24\t48\t8\n"
                                "drive # of slots:\t1\t1\t1\n"),
                ElementsAre("sr0", "sr2", "sr10"));
}

TEST(DriveNames, OfNothingAreNone) {
    EXPECT_THAT(parseDriveNames(""), IsEmpty());
    EXPECT_THAT(parseDriveNames("drive name:\n"), IsEmpty());
    EXPECT_THAT(parseDriveNames("drive name:\t../../etc/passwd\n"), IsEmpty());
}

TEST(ComputerDrives, BeginWithTheRootFileSystem) {
    EXPECT_THAT(drivesIn(""), ElementsAre("3 / "));
    EXPECT_EQ(drivesOf({}).size(), 1u);
}

TEST(ComputerDrives, TakeOpticalDrivesWithAndWithoutADisc) {
    EXPECT_THAT(
        drivesIn("2 1 11:1 / /media/DISC ro - iso9660 /dev/sr1 ro\n", {{"/dev/sr0", "11:0"}, {"/dev/sr1", "11:1"}}),
        ElementsAre("3 / ", "5  /dev/sr0", "5 /media/DISC /dev/sr1"));
}

TEST(ComputerDrives, KnowAMountedOpticalDriveByItsNumberUnderAnotherName) {
    EXPECT_THAT(drivesIn("2 1 11:0 / /cdrom ro - udf /dev/disk/by-label/X ro\n", {{"/dev/sr0", "11:0"}}),
                ElementsAre("3 / ", "5 /cdrom /dev/sr0"));
}

TEST(ComputerDrives, TakeAnyFileSystemThatIsMountedFromAnOpticalDrive) {
    EXPECT_THAT(drivesIn("2 1 11:0 / /cdrom ro - hfsplus /dev/sr0 ro\n", {{"/dev/sr0", "11:0"}}),
                ElementsAre("3 / ", "5 /cdrom /dev/sr0"));
}

TEST(ComputerDrives, TakeMountedImagesAfterTheOpticalDrives) {
    EXPECT_THAT(drivesIn("2 1 7:0 / /mnt/image ro - iso9660 /dev/loop0 ro\n"
                         "3 1 7:1 / /mnt/dvd ro - udf /dev/loop1 ro\n",
                         {{"/dev/sr0", ""}}),
                ElementsAre("3 / ", "5  /dev/sr0", "5 /mnt/image /dev/loop0", "5 /mnt/dvd /dev/loop1"));
}

TEST(ComputerDrives, TakeRemovableDisksThenNetworkSharesLast) {
    EXPECT_THAT(drivesIn("2 1 0:50 / /mnt/share rw - nfs4 server:/export rw\n"
                         "3 1 0:51 / /mnt/ssh rw - fuse.sshfs user@host: rw\n"
                         "4 1 8:17 / /media/STICK rw - vfat /dev/sdb1 rw\n"
                         "5 1 0:52 / /media/NTFS rw - fuseblk /dev/sdc1 rw\n"
                         "6 1 7:0 / /mnt/image ro - iso9660 /dev/loop0 ro\n"
                         "7 1 0:53 / /mnt/win rw - cifs //server/share rw\n",
                         {}, {"/dev/sdb", "/dev/sdb1", "/dev/sdc1"}),
                ElementsAre("3 / ", "5 /mnt/image /dev/loop0", "2 /media/STICK ", "2 /media/NTFS ", "4 /mnt/share ",
                            "4 /mnt/ssh ", "4 /mnt/win "));
}

TEST(ComputerDrives, PassOverFixedDisksAndTheKernelsOwnMounts) {
    EXPECT_THAT(drivesIn("2 1 0:5 / /proc rw - proc proc rw\n"
                         "3 1 8:2 / /home rw - ext4 /dev/sda2 rw\n"
                         "4 1 8:3 / /boot/efi rw - vfat /dev/sda3 rw\n"
                         "5 1 0:30 / /run rw - tmpfs tmpfs rw\n"
                         "6 1 7:3 / /snap/x ro - squashfs /dev/loop3 ro\n",
                         {}, {"/dev/sdb1"}),
                ElementsAre("3 / "));
}

TEST(ComputerDrives, CountAFileSystemOnceWhereAllOfItIsMounted) {
    EXPECT_THAT(drivesIn("2 1 7:0 /docs /srv/docs ro - iso9660 /dev/loop0 ro\n"
                         "3 1 7:0 / /mnt/image ro - iso9660 /dev/loop0 ro\n"
                         "4 1 7:0 / /mnt/again ro - iso9660 /dev/loop0 ro\n"),
                ElementsAre("3 / ", "5 /mnt/image /dev/loop0"));
}

TEST(ComputerDrives, DoNotGiveTheRootASecondLetter) {
    EXPECT_THAT(drivesOf({parseMountInfo("1 0 7:0 / / ro - iso9660 /dev/loop0 ro\n"), {}, {}}).size(), 1u);
}

TEST(ComputerDrives, HaveAKeyThatOutlastsMounting) {
    const auto keyWith = [](const std::string& mounts) {
        return drivesOf({parseMountInfo(mounts), {{"/dev/sr0", "11:0"}}, {}}).at(1).key;
    };
    EXPECT_EQ(keyWith(""), keyWith("2 1 11:0 / /cdrom ro - iso9660 /dev/sr0 ro\n"));
}

TEST(Computer, CanBeReadHere) {
    const auto computer = readComputer();
    ASSERT_NE(mountOf(computer.mounts, "/"), nullptr);
    EXPECT_EQ(drivesOf(computer).front().point, "/");
}

} // namespace
} // namespace discaro::disc
