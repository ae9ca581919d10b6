#include "disc/ListerFixture.h"
#include "support/ScratchFolder.h"

#include <string>
#include <vector>

namespace discaro::disc {
namespace {

using testing::IsEmpty;

class ListerMoves : public ListerFixture {
protected:
    static MemoryNode sample() {
        return folder("", {folder("BIN", {folder("X86", {folder("DEEP")}), folder("ALPHA")}), folder("docs"),
                           folder("Art"), file("README.TXT")});
    }
};

TEST_F(ListerMoves, BeforeTheFirstMoveThereIsNothing) {
    EXPECT_EQ(lister.path(), "");
    EXPECT_EQ(lister.listCount(), 0);
    EXPECT_EQ(lister.list(-2), "");
    EXPECT_EQ(lister.fileCount(), 0);
    EXPECT_EQ(lister.nextFile(), "");
    EXPECT_FALSE(lister.takeDamage().has_value());
}

TEST_F(ListerMoves, ARootPathEndsInABackslashAndOthersDoNot) {
    insert(sample());
    for (const auto* root : {"D:", "D:\\", "d:", "d:\\\\"}) {
        lister.setPath(root);
        EXPECT_EQ(lister.path(), "D:\\");
    }
    for (const auto* path : {"D:\\BIN\\X86", "D:\\BIN\\X86\\", "d:\\bin\\x86", "D:\\\\BIN\\\\X86"}) {
        lister.setPath(path);
        EXPECT_EQ(lister.path(), "D:\\BIN\\X86");
    }
}

TEST_F(ListerMoves, ListsFullPathsInAlphabeticalOrder) {
    insert(sample());
    lister.setPath("D:\\");
    EXPECT_THAT(directories(), ElementsAre("D:\\Art", "D:\\BIN", "D:\\docs"));
    lister.setPath("D:\\BIN");
    EXPECT_THAT(directories(), ElementsAre("D:\\BIN\\ALPHA", "D:\\BIN\\X86"));
    lister.setPath("D:\\docs");
    EXPECT_THAT(directories(), IsEmpty());
}

TEST_F(ListerMoves, MinusTwoIsTheParentAndTheRootItsOwn) {
    insert(sample());
    lister.setPath("D:\\BIN\\X86\\DEEP");
    std::vector<std::string> way;
    for (int i = 0; i < 5; ++i) {
        lister.setPath(lister.list(-2));
        way.push_back(lister.path());
    }
    EXPECT_THAT(way, ElementsAre("D:\\BIN\\X86", "D:\\BIN", "D:\\", "D:\\", "D:\\"));
}

TEST_F(ListerMoves, OtherIndexesAreOutOfRange) {
    insert(sample());
    lister.setPath("D:\\");
    for (const int index : {-3, -1, 3, 1000})
        EXPECT_EQ(errorOf([&] { lister.list(index); }), numberOf(ErrorNumber::InvalidValue)) << index;
}

TEST_F(ListerMoves, TheOrderIsWithoutRegardToCaseAndTiesAreByText) {
    insert(folder("", {folder("b"), folder("a10"), folder("A2"), folder("B"), folder("\u00E4"), folder("\u00C4b"),
                       folder("_x"), folder("Z"), folder(".hidden")}));
    lister.setPath("D:\\");
    EXPECT_THAT(directories(), ElementsAre("D:\\.hidden", "D:\\_x", "D:\\a10", "D:\\A2", "D:\\\u00E4", "D:\\\u00C4b",
                                           "D:\\B", "D:\\b", "D:\\Z"));
}

TEST_F(ListerMoves, DirectoriesThatDifferInCaseOnlyAreBothReached) {
    insert(folder("", {folder("data", {file("lower")}), folder("DATA", {file("upper")})}));
    lister.setPath("D:\\data");
    EXPECT_EQ(lister.path(), "D:\\data");
    EXPECT_THAT(files("D:\\data"), ElementsAre("lower"));
    lister.setPath("D:\\DATA");
    EXPECT_EQ(lister.path(), "D:\\DATA");
    EXPECT_THAT(files("D:\\DATA"), ElementsAre("upper"));
    lister.setPath("D:\\Data");
    EXPECT_EQ(lister.path(), "D:\\DATA");
}

TEST_F(ListerMoves, DirectoriesOfTheSameNameAreToldApart) {
    insert(folder("", {folder("DUP", {file("first")}), folder("DUP", {file("second")}),
                       folder("DUP (2)", {file("own")}), folder("DUP", {file("third")})}));
    lister.setPath("D:\\");
    EXPECT_THAT(directories(), ElementsAre("D:\\DUP", "D:\\DUP (2)", "D:\\DUP (3)", "D:\\DUP (4)"));
    std::vector<std::string> found;
    for (int i = 0; i < 4; ++i) {
        lister.setPath(lister.list(i));
        found.push_back(lister.firstFile(lister.path()));
        lister.setPath(lister.list(-2));
    }
    EXPECT_THAT(found, ElementsAre("first", "own", "second", "third"));
    lister.setPath("D:\\DUP (4)");
    EXPECT_EQ(lister.firstFile("D:\\DUP (4)"), "third");
}

TEST_F(ListerMoves, NamesGivenToRepeatedDirectoriesStandInOrder) {
    insert(folder("", {folder("A"), folder("A"), folder("A !"), folder("A .")}));
    lister.setPath("D:\\");
    EXPECT_THAT(directories(), ElementsAre("D:\\A", "D:\\A !", "D:\\A (2)", "D:\\A ."));
}

TEST_F(ListerMoves, APathThatIsNotThereThrowsAndStays) {
    insert(sample());
    lister.setPath("D:\\BIN");
    for (const auto* path : {"D:\\NOTHING", "D:\\BIN\\NO\\DEEPER", "D:\\README.TXT", "E:\\", "", "D", "BIN", "\\BIN",
                             "D:BIN", "D:/BIN", "DD:\\", ":\\", "D:\\BIN\\..", "D:\\."}) {
        EXPECT_EQ(errorOf([&] { lister.setPath(path); }), numberOf(ErrorNumber::PathMissing)) << path;
        EXPECT_EQ(lister.path(), "D:\\BIN");
        EXPECT_EQ(lister.listCount(), 2);
    }
}

TEST_F(ListerMoves, ADriveThatIsNotReadyThrowsAndStays) {
    insert(sample());
    auto& second = insert(sample());
    second.vanishAfter(0);
    lister.setPath("D:\\BIN");
    EXPECT_EQ(errorOf([&] { lister.setPath("E:\\"); }), numberOf(ErrorNumber::DriveNotReady));
    EXPECT_EQ(lister.path(), "D:\\BIN");
    EXPECT_EQ(lister.list(0), "D:\\BIN\\ALPHA");
}

TEST_F(ListerMoves, GoesFromDriveToDrive) {
    insert(sample());
    insert(folder("", {folder("OTHER")}));
    lister.setPath("D:\\BIN\\X86");
    lister.setPath("E:\\");
    EXPECT_THAT(directories(), ElementsAre("E:\\OTHER"));
    lister.setPath("E:\\OTHER");
    lister.setPath("D:\\docs");
    EXPECT_EQ(lister.path(), "D:\\docs");
}

TEST_F(ListerMoves, ChangesAreToldAfterTheMoveAndOnlyWhenThePathDiffers) {
    insert(sample());
    std::vector<std::string> told;
    lister.changed = [&] { told.push_back(lister.path() + " " + std::to_string(lister.listCount())); };
    lister.setPath("D:\\");
    lister.setPath("D:\\");
    lister.setPath("d:");
    lister.setPath(lister.list(1));
    lister.setPath(lister.list(-2));
    lister.setPath(lister.list(-2));
    EXPECT_EQ(errorOf([&] { lister.setPath("D:\\NO"); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_THAT(told, ElementsAre("D:\\ 3", "D:\\BIN 2", "D:\\ 3"));
}

TEST_F(ListerMoves, WhoIsToldMayMoveOnAndChangeWhoIsTold) {
    insert(sample());
    int calls = 0;
    lister.changed = [&] {
        ++calls;
        lister.changed = nullptr;
        lister.setPath("D:\\BIN");
    };
    lister.setPath("D:\\");
    EXPECT_EQ(lister.path(), "D:\\BIN");
    EXPECT_EQ(calls, 1);
}

TEST_F(ListerMoves, AWalkListsEachDirectoryOnce) {
    const auto& medium = insert(sample());
    lister.setPath("D:\\");
    const std::function<void()> walk = [&] {
        const int count = lister.listCount();
        for (int i = 0; i < count; ++i) {
            lister.setPath(lister.list(i));
            walk();
        }
        lister.setPath(lister.list(-2));
    };
    walk();
    EXPECT_EQ(lister.path(), "D:\\");
    EXPECT_THAT(medium.listed(),
                ElementsAre("\\", "\\Art", "\\BIN", "\\BIN\\ALPHA", "\\BIN\\X86", "\\BIN\\X86\\DEEP", "\\docs"));
}

TEST_F(ListerMoves, OnlyTheDirectoriesAboveAreKept) {
    const auto& medium = insert(sample());
    lister.setPath("D:\\BIN\\X86\\DEEP");
    lister.setPath("D:\\BIN\\X86");
    lister.setPath("D:\\BIN");
    lister.setPath("D:\\");
    EXPECT_EQ(medium.calls(Asked::List), 4);
    lister.setPath("D:\\docs");
    lister.setPath("D:\\BIN");
    EXPECT_THAT(medium.listed(), ElementsAre("\\", "\\BIN", "\\BIN\\X86", "\\BIN\\X86\\DEEP", "\\docs", "\\BIN"));
}

TEST_F(ListerMoves, AMoveAsideReadsOnlyWhatIsBelowTheCommonPart) {
    const auto& medium = insert(sample());
    lister.setPath("D:\\BIN\\X86\\DEEP");
    lister.setPath("D:\\BIN\\ALPHA");
    EXPECT_EQ(medium.listed().back(), "\\BIN\\ALPHA");
    EXPECT_EQ(medium.calls(Asked::List), 5);
}

TEST_F(ListerMoves, MovingToTheOwnPathIsHarmless) {
    const auto& medium = insert(sample());
    lister.setPath("D:\\BIN\\X86");
    lister.setPath(lister.path());
    EXPECT_EQ(lister.path(), "D:\\BIN\\X86");
    EXPECT_EQ(medium.calls(Asked::List), 3);
}

TEST_F(ListerMoves, AnotherDiscInTheDriveIsReadAnew) {
    const test::ScratchFolder scratch;
    scratch.makeFolder("ONE/first");
    scratch.makeFolder("TWO/second");
    Computer computer;
    computer.opticalDrives.push_back({"/dev/no-such-drive", ""});
    computer.mounts.push_back({"11:0", "/", (scratch.path() / "ONE").string(), "iso9660", "/dev/no-such-drive", true});
    const DriveTable drives([&] { return computer; });
    Lister moving(drives);
    moving.setPath("D:\\");
    EXPECT_EQ(moving.list(0), "D:\\first");
    computer.mounts[0].point = (scratch.path() / "TWO").string();
    EXPECT_EQ(drives.facts("D:").label, "TWO");
    moving.setPath("D:\\");
    EXPECT_EQ(moving.list(0), "D:\\second");
}

TEST_F(ListerMoves, LettingGoKeepsThePathAndNothingElse) {
    auto& medium = insert(sample());
    lister.setPath("D:\\BIN");
    lister.setFilePath("D:\\");
    lister.firstFile("D:\\");
    lister.letGo();
    EXPECT_EQ(lister.path(), "D:\\BIN");
    EXPECT_EQ(lister.listCount(), 0);
    EXPECT_EQ(lister.fileCount(), 0);
    EXPECT_EQ(lister.nextFile(), "");
    const int listings = medium.calls(Asked::List);
    int changes = 0;
    lister.changed = [&] { ++changes; };
    lister.setPath("D:\\BIN");
    EXPECT_EQ(lister.listCount(), 2);
    EXPECT_GT(medium.calls(Asked::List), listings);
    EXPECT_EQ(changes, 1) << "what is read anew may be something else";
}

TEST_F(ListerMoves, FoldersDeeperThanAPathMayBeLongAreWalked) {
    const test::ScratchFolder scratch;
    scratch.makeDeep(std::string(255, 'd'), 30, "bottom.txt");
    table.addImageOrFolder(scratch.path());
    lister.setPath("D:\\");
    while (lister.listCount() > 0)
        lister.setPath(lister.list(0));
    EXPECT_EQ(lister.path().size(), 2 + 30 * 256u);
    EXPECT_THAT(files(lister.path()), ElementsAre("bottom.txt"));
    EXPECT_EQ(lister.fileLength(lister.path() + "\\bottom.txt"), 0u);
}

} // namespace
} // namespace discaro::disc
