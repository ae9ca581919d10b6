#include "base/RuntimeError.h"
#include "disc/ImageHelp.h"
#include "disc/folder/FolderTree.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace discaro::disc {
namespace {

using base::RuntimeError;
using test::ScratchFolder;

namespace fs = std::filesystem;

size_t openDescriptors() {
    size_t count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

TEST(FolderTree, ADirectoryHasTheSameNumberEachTime) {
    FolderTree tree("/nowhere");
    const auto a = tree.number(FolderTree::kRoot, "a");
    const auto inA = tree.number(a, "a");
    EXPECT_EQ(tree.number(FolderTree::kRoot, "a"), a);
    EXPECT_EQ(tree.number(a, "a"), inA);
    EXPECT_EQ((std::set<uint32_t>{FolderTree::kRoot, a, inA, tree.number(FolderTree::kRoot, "b")}.size()), 4u);
}

TEST(FolderTree, NumbersStayApartWhenThereAreMany) {
    FolderTree tree("/nowhere");
    std::set<uint32_t> numbers;
    for (uint32_t parent = 0; parent < 100; ++parent) {
        for (int i = 0; i < 100; ++i)
            numbers.insert(tree.number(parent, std::to_string(i)));
    }
    EXPECT_EQ(numbers.size(), 10'000u);
    EXPECT_EQ(tree.number(7, "42"), tree.number(7, "42"));
}

TEST(FolderTree, FewDirectoriesStayOpen) {
    const ScratchFolder folder;
    FolderTree tree(folder.path());
    const auto before = openDescriptors();
    for (int i = 0; i < 200; ++i) {
        const auto name = std::to_string(i);
        folder.makeFolder(name);
        EXPECT_NE(tree.open(tree.number(FolderTree::kRoot, name)), nullptr);
    }
    EXPECT_LE(openDescriptors(), before + 16);
}

TEST(FolderTree, NothingIsOpenBeforeItIsNeededNorAfterwards) {
    const ScratchFolder folder;
    const auto before = openDescriptors();
    {
        FolderTree tree(folder.path());
        EXPECT_EQ(openDescriptors(), before);
        tree.open(FolderTree::kRoot);
        EXPECT_EQ(openDescriptors(), before + 1);
    }
    EXPECT_EQ(openDescriptors(), before);
}

TEST(FolderTree, AFailureLeavesNothingOpen) {
    const ScratchFolder folder;
    folder.write("file");
    FolderTree tree(folder.path());
    tree.open(FolderTree::kRoot);
    const auto before = openDescriptors();
    EXPECT_THROW(tree.open(tree.number(FolderTree::kRoot, "missing")), RuntimeError);
    EXPECT_THROW(tree.open(tree.number(FolderTree::kRoot, "file")), RuntimeError);
    EXPECT_THROW(tree.open(999), RuntimeError);
    EXPECT_EQ(openDescriptors(), before);
}

TEST(FolderTree, ANumberThatWasNeverGivenIsAMissingPath) {
    const ScratchFolder folder;
    FolderTree tree(folder.path());
    const uint32_t next = FolderTree::kRoot + 1;
    EXPECT_EQ(test::errorOf([&] { tree.open(next); }), test::numberOf(base::ErrorNumber::PathMissing));
    EXPECT_EQ(test::errorOf([&] { tree.number(next, "a"); }), test::numberOf(base::ErrorNumber::PathMissing));
}

TEST(FolderTree, GoingUpAndDownADeepTreeReopensWhatWasClosed) {
    constexpr uint32_t kLevels = 500;
    const ScratchFolder folder;
    folder.makeDeep("d", kLevels, "file");
    FolderTree tree(folder.path());
    uint32_t bottom = FolderTree::kRoot;
    for (uint32_t level = 0; level < kLevels; ++level)
        bottom = tree.number(bottom, "d");
    EXPECT_NE(tree.open(bottom), nullptr);
    EXPECT_NE(tree.open(FolderTree::kRoot), nullptr);
    EXPECT_NE(tree.open(bottom), nullptr);
    EXPECT_FALSE(tree.isInsideItself(bottom));
}

TEST(FolderTree, ADirectoryThatIsOneOfThoseAboveItIsInsideItself) {
    FolderTree tree("/nowhere");
    const auto a = tree.number(FolderTree::kRoot, "a");
    const auto b = tree.number(a, "b");
    const auto c = tree.number(b, "c");
    tree.setIdentity(FolderTree::kRoot, {1, 2});
    tree.setIdentity(a, {1, 10});
    tree.setIdentity(b, {1, 11});
    tree.setIdentity(c, {1, 10});
    EXPECT_TRUE(tree.isInsideItself(c));
    EXPECT_FALSE(tree.isInsideItself(b));
    EXPECT_FALSE(tree.isInsideItself(FolderTree::kRoot));
    tree.setIdentity(c, {2, 10}); // the same inode of another device
    EXPECT_FALSE(tree.isInsideItself(c));
    tree.setIdentity(c, {1, 2});
    EXPECT_TRUE(tree.isInsideItself(c));
}

} // namespace
} // namespace discaro::disc
