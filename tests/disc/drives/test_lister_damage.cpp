#include "disc/ListerFixture.h"
#include "support/ScratchFolder.h"

#include <string>

namespace discaro::disc {
namespace {

using testing::HasSubstr;

class ListerDamage : public ListerFixture {
protected:
    int takenNumber() {
        const auto damage = lister.takeDamage();
        return damage ? damage->number() : 0;
    }
};

TEST_F(ListerDamage, OfASoundDirectoryIsNone) {
    insert(folder("", {folder("FINE")}));
    lister.setPath("D:\\");
    EXPECT_FALSE(lister.takeDamage());
    lister.setPath("D:\\FINE");
    EXPECT_FALSE(lister.takeDamage());
}

TEST_F(ListerDamage, OfAPartlyReadDirectoryIsToldOnceAndTheRestIsThere) {
    insert(folder("", {folder("HALF", {file("readable.txt"), folder("SUB")}).withDamage("cut short at sector 77")}));
    lister.setPath("D:\\HALF");
    const auto damage = lister.takeDamage();
    ASSERT_TRUE(damage);
    EXPECT_TRUE(damage->is(ErrorNumber::DirectoryDamaged));
    EXPECT_THAT(damage->description(), HasSubstr("cut short at sector 77"));
    EXPECT_FALSE(lister.takeDamage());
    EXPECT_THAT(files("D:\\HALF"), ElementsAre("readable.txt"));
    EXPECT_THAT(directories(), ElementsAre("D:\\HALF\\SUB"));
}

TEST_F(ListerDamage, DoesNotKeepTheFilesFromBeingEnumerated) {
    insert(folder("", {folder("HALF", {file("readable.txt")}).withDamage("bad")}));
    lister.setPath("D:\\HALF");
    EXPECT_EQ(lister.firstFile("D:\\HALF"), "readable.txt");
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::DirectoryDamaged));
    EXPECT_EQ(lister.nextFile(), "");
}

TEST_F(ListerDamage, OfAnUnreadableDirectoryIsItsErrorAndItIsEmpty) {
    insert(folder("", {folder("BAD", {file("lost")}).withFailure(ErrorNumber::ReadFailure), folder("NEXT")}));
    lister.setPath("D:\\");
    lister.setPath(lister.list(0));
    EXPECT_EQ(lister.path(), "D:\\BAD");
    EXPECT_EQ(lister.listCount(), 0);
    lister.setFilePath(lister.path());
    EXPECT_EQ(lister.fileCount(), 0);
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::ReadFailure));
    EXPECT_EQ(takenNumber(), 0);
    EXPECT_EQ(lister.firstFile("D:\\BAD"), "");
    lister.setPath(lister.list(-2));
    lister.setPath(lister.list(1));
    EXPECT_EQ(lister.path(), "D:\\NEXT");
    EXPECT_EQ(takenNumber(), 0);
}

TEST_F(ListerDamage, IsToldOnEachVisitThatReadsTheDirectory) {
    insert(folder("", {folder("BAD").withFailure(ErrorNumber::ReadFailure), folder("NEXT")}));
    for (int visit = 0; visit < 3; ++visit) {
        lister.setPath("D:\\BAD");
        EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::ReadFailure));
        EXPECT_EQ(takenNumber(), 0);
        lister.setPath("D:\\NEXT");
    }
}

TEST_F(ListerDamage, IsNotToldAgainOnTheWayUp) {
    insert(folder("", {folder("HALF", {folder("SUB")}).withDamage("bad")}));
    lister.setPath("D:\\HALF");
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::DirectoryDamaged));
    lister.setPath("D:\\HALF\\SUB");
    lister.setPath("D:\\HALF");
    EXPECT_EQ(takenNumber(), 0);
}

TEST_F(ListerDamage, ThatNobodyTookWaitsForTheWayUp) {
    insert(folder("", {folder("SUB")}).withDamage("bad root"));
    lister.setPath("D:\\");
    lister.setPath("D:\\SUB");
    EXPECT_EQ(takenNumber(), 0);
    lister.setPath("D:\\");
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::DirectoryDamaged));
}

TEST_F(ListerDamage, OfTheRootsReadingIsThrownAndARetrySucceeds) {
    auto& medium = insert(folder("", {folder("SUB")}));
    medium.failOn(Asked::List, 1);
    EXPECT_EQ(errorOf([&] { lister.setPath("D:\\"); }), numberOf(ErrorNumber::ReadFailure));
    EXPECT_EQ(lister.path(), "");
    lister.setPath("D:\\");
    EXPECT_THAT(directories(), ElementsAre("D:\\SUB"));
    EXPECT_EQ(takenNumber(), 0);
}

TEST_F(ListerDamage, OfALoopEndsTheWay) {
    insert(folder("", {folder("A", {folder("B", {folder("BACK").standingFor("\\A"), file("in-b")})}),
                       folder("SELF").standingFor("")}));
    lister.setPath("D:\\A\\B\\BACK");
    EXPECT_EQ(lister.path(), "D:\\A\\B\\BACK");
    EXPECT_EQ(lister.listCount(), 0);
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::DirectoryLoop));
    lister.setPath("D:\\SELF");
    EXPECT_EQ(lister.listCount(), 0);
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::DirectoryLoop));
    EXPECT_EQ(errorOf([&] { lister.setPath("D:\\SELF\\A"); }), numberOf(ErrorNumber::PathMissing));
}

TEST_F(ListerDamage, OfTooManyLevelsEndsTheWay) {
    MemoryNode root = folder("N");
    for (size_t level = 0; level < Lister::kMostLevels + 5; ++level) {
        MemoryNode outer = folder("N");
        outer.children.push_back(std::move(root));
        root = std::move(outer);
    }
    insert(std::move(root));
    lister.setPath("D:\\");
    size_t levels = 0;
    while (lister.listCount() > 0) {
        EXPECT_FALSE(lister.takeDamage());
        lister.setPath(lister.list(0));
        ++levels;
    }
    EXPECT_EQ(levels, Lister::kMostLevels + 1);
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::DirectoryDamaged));
    lister.setPath(lister.list(-2));
    EXPECT_EQ(lister.listCount(), 1);
    while (lister.path() != "D:\\")
        lister.setPath(lister.list(-2));
    EXPECT_EQ(lister.listCount(), 1);
}

TEST_F(ListerDamage, OfAPathThatGrowsTooLongEndsTheWay) {
    const std::string name(250, 'n');
    MemoryNode deepest = folder(name);
    for (size_t level = 0; level * name.size() < 2 * Lister::kLongestPath; ++level)
        deepest = folder(name, {std::move(deepest)});
    insert(folder("", {std::move(deepest)}));
    lister.setPath("D:\\");
    while (lister.listCount() > 0)
        lister.setPath(lister.list(0));
    EXPECT_EQ(takenNumber(), static_cast<int>(ErrorNumber::DirectoryDamaged));
    EXPECT_GT(lister.path().size(), Lister::kLongestPath);
    EXPECT_LT(lister.path().size(), Lister::kLongestPath + 2 * name.size());
}

TEST_F(ListerDamage, OfADiscThatVanishesLeavesAWalkThatEnds) {
    MemoryNode root = folder("");
    for (int d = 0; d < 10; ++d)
        root.children.push_back(folder("D" + std::to_string(d), {folder("IN"), file("F")}));
    auto& medium = insert(root);
    medium.vanishAfter(6);
    lister.setPath("D:\\");
    int damaged = 0;
    int visited = 0;
    const std::function<void()> walk = [&] {
        ++visited;
        damaged += takenNumber() == numberOf(ErrorNumber::DriveNotReady) ? 1 : 0;
        for (int i = 0; i < lister.listCount(); ++i) {
            lister.setPath(lister.list(i));
            walk();
        }
        lister.setPath(lister.list(-2));
    };
    walk();
    EXPECT_EQ(lister.path(), "D:\\");
    EXPECT_GT(damaged, 0);
    EXPECT_EQ(visited, 1 + 10 + 3); // three of the inner directories were read before
}

TEST_F(ListerDamage, OfADirectoryThatVanishesIsToldInItsPlace) {
    const test::ScratchFolder scratch;
    scratch.makeFolder("GOING");
    scratch.makeFolder("STAYS");
    table.addImageOrFolder(scratch.path());
    lister.setPath("D:\\");
    std::filesystem::remove(scratch.path() / "GOING");
    lister.setPath(lister.list(0));
    EXPECT_EQ(lister.path(), "D:\\GOING");
    EXPECT_EQ(takenNumber(), numberOf(ErrorNumber::PathMissing));
    lister.setPath("D:\\STAYS");
    EXPECT_EQ(takenNumber(), 0);
}

TEST_F(ListerDamage, OfAFilesFactsIsThrownAtEachCallAsLongAsItLasts) {
    insert(folder("", {file("BAD").withFailure(ErrorNumber::ReadFailure), file("GOOD", "four")}));
    const std::string path = "D:\\" + lister.firstFile("D:");
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(errorOf([&] { lister.fileLength(path); }), numberOf(ErrorNumber::ReadFailure));
        EXPECT_EQ(errorOf([&] { lister.fileTime(path); }), numberOf(ErrorNumber::ReadFailure));
        EXPECT_EQ(errorOf([&] { lister.fileAttributes(path); }), numberOf(ErrorNumber::ReadFailure));
    }
    EXPECT_EQ(lister.nextFile(), "GOOD");
    EXPECT_EQ(lister.fileLength("D:\\GOOD"), 4u);
    EXPECT_EQ(errorOf([&] { lister.fileLength(path); }), numberOf(ErrorNumber::ReadFailure));
}

TEST_F(ListerDamage, OfAFilesFactsThatPassesIsGoneOnTheNextTry) {
    auto& medium = insert(folder("", {file("FLAKY", "12345")}));
    medium.failOn(Asked::Facts, 1);
    lister.firstFile("D:");
    EXPECT_EQ(errorOf([&] { lister.fileLength("D:\\FLAKY"); }), numberOf(ErrorNumber::ReadFailure));
    EXPECT_EQ(lister.fileLength("D:\\FLAKY"), 5u);
}

TEST_F(ListerDamage, OfAFileIsThrownWhenItIsOpenedOrRead) {
    insert(folder("", {file("SHUT", "x").withOpenFailure(ErrorNumber::ReadFailure),
                       file("BROKEN", "12345678").withReadFailure(ErrorNumber::ReadFailure)}));
    EXPECT_EQ(errorOf([&] { lister.openFile("D:\\SHUT"); }), numberOf(ErrorNumber::ReadFailure));
    EXPECT_TRUE(lister.hasFile("D:\\SHUT"));
    const auto source = lister.openFile("D:\\BROKEN");
    std::array<std::byte, 4> buffer{};
    EXPECT_EQ(source->read(0, buffer), 4u);
    EXPECT_EQ(errorOf([&] { source->read(4, buffer); }), numberOf(ErrorNumber::ReadFailure));
}

TEST_F(ListerDamage, OfADriveDoesNotMakeAFileExist) {
    auto& medium = insert(folder("", {file("AUTORUN.INF")}));
    medium.vanishAfter(0);
    EXPECT_FALSE(lister.hasFile("D:\\autorun.inf"));
    EXPECT_EQ(errorOf([&] { lister.openFile("D:\\autorun.inf"); }), numberOf(ErrorNumber::DriveNotReady));
    EXPECT_EQ(lister.firstFile("D:"), "");
    EXPECT_EQ(errorOf([&] { lister.setFilePath("D:\\"); }), numberOf(ErrorNumber::DriveNotReady));
    EXPECT_EQ(lister.fileCount(), 0);
}

TEST_F(ListerDamage, OfACallbackLeavesTheMoveDone) {
    insert(folder("", {folder("SUB")}));
    lister.changed = [] { throw base::RuntimeError(ErrorNumber::ReadFailure); };
    EXPECT_EQ(errorOf([&] { lister.setPath("D:\\SUB"); }), numberOf(ErrorNumber::ReadFailure));
    EXPECT_EQ(lister.path(), "D:\\SUB");
    EXPECT_EQ(errorOf([&] { lister.setPath("D:\\SUB"); }), std::nullopt);
}

} // namespace
} // namespace discaro::disc
