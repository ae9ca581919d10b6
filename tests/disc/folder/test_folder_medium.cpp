#include "base/Text.h"
#include "disc/ImageHelp.h"
#include "disc/folder/FolderMedium.h"
#include "disc/system/MountTable.h"
#include "support/ScratchFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace discaro::disc {
namespace {

using base::ErrorNumber;
using test::errorOf;
using test::namesOf;
using test::numberOf;
using test::ScratchFolder;
using testing::ElementsAre;
using testing::MatchesRegex;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

const Entry& entryOf(const std::vector<Entry>& entries, std::string_view raw) {
    const auto found = std::ranges::find(entries, raw, [](const Entry& entry) { return entry.place.raw; });
    if (found == entries.end())
        throw std::out_of_range("no entry " + std::string(raw));
    return *found;
}

std::string contentOf(const ByteSource& source) {
    std::string text(source.size(), '?');
    const auto count = source.read(0, std::as_writable_bytes(std::span(text)));
    text.resize(count);
    return text;
}

class FolderMediumTest : public testing::Test {
protected:
    Listing listRoot() const { return test::rootOf(medium); }
    Listing listBelowRoot(const Entry& directory) const { return medium.list(medium.root(), directory.place); }
    FileFacts factsOf(std::string_view raw) const {
        return medium.fileFacts(medium.root(), entryOf(listRoot().files, raw).place);
    }
    std::unique_ptr<ByteSource> openFile(std::string_view raw) const {
        return medium.open(medium.root(), entryOf(listRoot().files, raw).place);
    }

    ScratchFolder folder;
    FolderMedium medium{folder.path(), FolderMedium::Use::Disc};
};

TEST_F(FolderMediumTest, ListsDirectoriesAndFilesApartWithHiddenOnes) {
    folder.makeFolder("SUB");
    folder.makeFolder(".hidden");
    folder.write("README.TXT");
    folder.write(".profile");
    const auto listing = listRoot();
    EXPECT_THAT(namesOf(listing.directories), UnorderedElementsAre("SUB", ".hidden"));
    EXPECT_THAT(namesOf(listing.files), UnorderedElementsAre("README.TXT", ".profile"));
    EXPECT_EQ(listing.damage, "");
    EXPECT_TRUE(listing.directories[0].isDirectory);
    EXPECT_FALSE(listing.files[0].isDirectory);
}

TEST_F(FolderMediumTest, AnEmptyFolderHasAnEmptyListing) {
    const auto listing = listRoot();
    EXPECT_TRUE(listing.directories.empty());
    EXPECT_TRUE(listing.files.empty());
}

TEST_F(FolderMediumTest, NamesOfAnyBytesAreShownAsTextAndStillOpen) {
    const std::vector<std::string> names = {
        "caf\xE9", "a\\b",     "line\nend", std::string(255, 'x'), "...", "..a",   " ",
        "-rf",     "\xFF\xFE", "tab\there", "\\\\srv\\x",          "D:",  "*?.txt"};
    for (const auto& name : names)
        folder.write(name, "content of " + name);
    const auto listing = listRoot();
    ASSERT_EQ(listing.files.size(), names.size());
    for (const auto& name : names) {
        const auto& entry = entryOf(listing.files, name);
        EXPECT_TRUE(base::isValidUtf8(entry.name)) << name;
        EXPECT_EQ(entry.name.find('\\'), std::string::npos) << name;
        EXPECT_EQ(contentOf(*medium.open(medium.root(), entry.place)), "content of " + name);
        EXPECT_EQ(medium.fileFacts(medium.root(), entry.place).size, 11 + name.size());
    }
}

TEST_F(FolderMediumTest, DirectoriesWithNamesOfAnyBytesAreReached) {
    for (const std::string name : {"\xE9t\xE9", "back\\slash", "new\nline"}) {
        folder.makeFolder(name);
        folder.write(fs::path(name) / "inside");
        const auto listing = listBelowRoot(entryOf(listRoot().directories, name));
        EXPECT_THAT(namesOf(listing.files), ElementsAre("inside"));
    }
}

TEST(FolderFileSystem, IsThatOfTheMountWhichTheFolderLiesOn) {
    const ScratchFolder folder;
    const auto mounts = readMounts();
    const auto* mount = mountOf(mounts, fs::canonical(folder.path()).native());
    ASSERT_NE(mount, nullptr);
    const FolderMedium medium(folder.path(), FolderMedium::Use::Mount);
    EXPECT_EQ(medium.facts().fileSystem, mount->type);
}

TEST_F(FolderMediumTest, FactsAreSizeAndTimeOfTheFile) {
    folder.write("A.BIN", std::string(12345, 'a'));
    const std::array<timespec, 2> times = {timespec{1000, 0}, timespec{1040812215, 999999999}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder.path() / "A.BIN").c_str(), times.data(), 0), 0);
    const auto facts = factsOf("A.BIN");
    EXPECT_EQ(facts.size, 12345u);
    EXPECT_EQ(facts.modified, 1040812215);
}

TEST_F(FolderMediumTest, AFileOlderThanTheEpochHasANegativeTime) {
    folder.write("OLD");
    const std::array<timespec, 2> times = {timespec{-86400, 0}, timespec{-86400, 0}};
    ASSERT_EQ(::utimensat(AT_FDCWD, (folder.path() / "OLD").c_str(), times.data(), 0), 0);
    EXPECT_EQ(factsOf("OLD").modified, -86400);
}

TEST_F(FolderMediumTest, ADotInFrontIsHiddenAndNoWriteBitIsReadOnly) {
    folder.write("plain");
    folder.write(".dot");
    for (const auto& [name, mode] : {std::pair(".locked", 0444), std::pair("locked", 0555), std::pair("group", 0464)}) {
        folder.write(name);
        ASSERT_EQ(::chmod((folder.path() / name).c_str(), static_cast<mode_t>(mode)), 0);
    }
    EXPECT_EQ(factsOf("plain").attributes, 0u);
    EXPECT_EQ(factsOf(".dot").attributes, attribute::kHidden);
    EXPECT_EQ(factsOf("locked").attributes, attribute::kReadOnly);
    EXPECT_EQ(factsOf("group").attributes, 0u);
    EXPECT_EQ(factsOf(".locked").attributes, attribute::kReadOnly | attribute::kHidden);
}

TEST_F(FolderMediumTest, PipesAndSocketsHaveFactsAndNeitherLengthNorBytes) {
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    (folder.path() / "socket").native().copy(address.sun_path, sizeof address.sun_path - 1);
    const base::Descriptor socket(::socket(AF_UNIX, SOCK_STREAM, 0));
    ASSERT_EQ(::bind(socket.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_THAT(namesOf(listRoot().files), UnorderedElementsAre("pipe", "socket"));
    for (const auto* name : {"pipe", "socket"}) {
        EXPECT_EQ(factsOf(name).size, 0u);
        EXPECT_GT(factsOf(name).modified, 0);
        EXPECT_EQ(openFile(name)->size(), 0u);
        EXPECT_EQ(contentOf(*openFile(name)), "");
    }
}

TEST_F(FolderMediumTest, ReadsAnyPartOfAFile) {
    folder.write("digits", "0123456789");
    const auto source = openFile("digits");
    EXPECT_EQ(source->size(), 10u);
    std::array<std::byte, 4> buffer{};
    EXPECT_EQ(source->read(3, buffer), 4u);
    EXPECT_EQ(buffer[0], std::byte{'3'});
    EXPECT_EQ(source->read(8, buffer), 2u);
    EXPECT_EQ(buffer[1], std::byte{'9'});
    EXPECT_EQ(source->read(10, buffer), 0u);
    EXPECT_EQ(source->read(UINT64_MAX, buffer), 0u);
    EXPECT_EQ(source->read(0, {}), 0u);
}

TEST_F(FolderMediumTest, AFileThatShrankGivesWhatIsLeft) {
    const auto path = folder.write("shrinking", "0123456789");
    const auto source = openFile("shrinking");
    fs::resize_file(path, 4);
    EXPECT_EQ(contentOf(*source), "0123");
}

TEST_F(FolderMediumTest, AnOpenFileOutlivesTheMedium) {
    folder.write("kept", "still here");
    auto shortLived = std::make_unique<FolderMedium>(folder.path(), FolderMedium::Use::Disc);
    const auto place = entryOf(shortLived->list(shortLived->root(), shortLived->root()).files, "kept").place;
    const auto source = shortLived->open(shortLived->root(), place);
    shortLived.reset();
    EXPECT_EQ(contentOf(*source), "still here");
}

TEST_F(FolderMediumTest, WhatIsGoneIsMissing) {
    folder.makeFolder("going");
    folder.write("gone.txt");
    const auto listing = listRoot();
    fs::remove_all(folder.path() / "going");
    fs::remove(folder.path() / "gone.txt");
    EXPECT_EQ(errorOf([&] { listBelowRoot(listing.directories[0]); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { medium.fileFacts(medium.root(), listing.files[0].place); }),
              numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { medium.open(medium.root(), listing.files[0].place); }), numberOf(ErrorNumber::PathMissing));
}

TEST_F(FolderMediumTest, ADirectoryThatBecameALinkIsMissing) {
    folder.makeFolder("safe");
    folder.makeFolder("swapped");
    const auto listing = listRoot();
    fs::remove(folder.path() / "swapped");
    fs::create_directory_symlink("safe", folder.path() / "swapped");
    EXPECT_EQ(errorOf([&] { listBelowRoot(entryOf(listing.directories, "swapped")); }),
              numberOf(ErrorNumber::PathMissing));
}

TEST_F(FolderMediumTest, ADirectoryThatVanishesWhileItIsOpenIsEmpty) {
    folder.makeFolder("open");
    folder.write("open/file");
    const auto listing = listRoot();
    EXPECT_EQ(listBelowRoot(listing.directories[0]).files.size(), 1u);
    fs::remove_all(folder.path() / "open");
    EXPECT_TRUE(listBelowRoot(listing.directories[0]).files.empty());
}

TEST_F(FolderMediumTest, ARootThatIsNotThereIsADriveThatIsNotReady) {
    const FolderMedium missing(folder.path() / "nowhere", FolderMedium::Use::Disc);
    EXPECT_EQ(errorOf([&] { missing.list(missing.root(), missing.root()); }), numberOf(ErrorNumber::DriveNotReady));
    EXPECT_EQ(errorOf([&] { missing.facts(); }), numberOf(ErrorNumber::DriveNotReady));
    const FolderMedium noFolder(folder.write("file"), FolderMedium::Use::Disc);
    EXPECT_EQ(errorOf([&] { noFolder.list(noFolder.root(), noFolder.root()); }), numberOf(ErrorNumber::DriveNotReady));
}

TEST_F(FolderMediumTest, APlaceThatTheMediumNeverGaveIsMissing) {
    const Place strange{12345, 0, "name"};
    EXPECT_EQ(errorOf([&] { medium.list(medium.root(), strange); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { medium.fileFacts(medium.root(), strange); }), numberOf(ErrorNumber::PathMissing));
}

TEST_F(FolderMediumTest, TreesDeeperThanAPathMayBeLongAreWalkedToTheEnd) {
    constexpr size_t kLevels = 60; // of 255 bytes: more than 15,000 bytes of path
    const std::string name(255, 'd');
    folder.makeDeep(name, kLevels, "bottom.txt");
    Place parent = medium.root();
    Place at = medium.root();
    Listing listing = medium.list(parent, at);
    for (size_t level = 0; level < kLevels; ++level) {
        ASSERT_THAT(namesOf(listing.directories), ElementsAre(name)) << level;
        parent = std::exchange(at, listing.directories[0].place);
        listing = medium.list(parent, at);
    }
    EXPECT_THAT(namesOf(listing.files), ElementsAre("bottom.txt"));
    EXPECT_EQ(medium.fileFacts(at, listing.files[0].place).size, 0u);
}

TEST_F(FolderMediumTest, DirectoriesAreFoundAgainInAnyOrder) {
    for (int i = 0; i < 100; ++i) {
        const auto name = std::to_string(i);
        folder.makeFolder(name + "/in");
        folder.write(fs::path(name) / "in" / "file", std::string(static_cast<size_t>(i), 'x'));
    }
    const auto root = listRoot();
    std::vector<std::pair<Place, Place>> files;
    for (const auto& directory : root.directories) {
        const auto inner = listBelowRoot(directory).directories.at(0).place;
        files.emplace_back(inner, medium.list(directory.place, inner).files.at(0).place);
    }
    for (size_t i = 0; i < files.size(); ++i) {
        const auto& [inner, file] = files[(i * 37) % files.size()];
        const auto expected = std::stoul(root.directories[(i * 37) % files.size()].name);
        EXPECT_EQ(medium.fileFacts(inner, file).size, expected);
        EXPECT_EQ(medium.list(inner, inner).files.size(), 1u);
    }
}

TEST_F(FolderMediumTest, ListingAgainSeesWhatIsNew) {
    folder.write("one");
    EXPECT_EQ(listRoot().files.size(), 1u);
    folder.write("two");
    EXPECT_THAT(namesOf(listRoot().files), UnorderedElementsAre("one", "two"));
}

TEST_F(FolderMediumTest, AFolderForADiscHasItsNameAsLabelAndNothingFree) {
    const FolderMedium disc(folder.makeFolder("My Discs/VOL 1"), FolderMedium::Use::Disc);
    const auto facts = disc.facts();
    EXPECT_EQ(facts.label, "VOL 1");
    EXPECT_TRUE(facts.isFolder);
    EXPECT_EQ(facts.totalBytes, 0u) << "the file system below is no part of it";
    EXPECT_EQ(facts.freeBytes, 0u);
    EXPECT_FALSE(facts.fileSystem.empty());
}

TEST_F(FolderMediumTest, AMountHasItsFreeSpace) {
    const FolderMedium mount("/", FolderMedium::Use::Mount);
    const auto facts = mount.facts();
    EXPECT_EQ(facts.label, "");
    EXPECT_GT(facts.totalBytes, 0u);
    EXPECT_LE(facts.freeBytes, facts.totalBytes);
}

TEST_F(FolderMediumTest, TheSerialStaysTheSameAndTellsFoldersApart) {
    const FolderMedium first(folder.makeFolder("first"), FolderMedium::Use::Disc);
    const FolderMedium again(folder.path() / "first", FolderMedium::Use::Disc);
    const FolderMedium second(folder.makeFolder("second"), FolderMedium::Use::Disc);
    EXPECT_THAT(first.facts().serial, MatchesRegex("[0-9A-F]{4}-[0-9A-F]{4}"));
    EXPECT_EQ(first.facts().serial, again.facts().serial);
    EXPECT_NE(first.facts().serial, second.facts().serial);
}

TEST(FolderLabel, IsTheLastPartOfThePath) {
    EXPECT_EQ(folderLabel("/media/user/DISC_1"), "DISC_1");
    EXPECT_EQ(folderLabel("/media/user/DISC_1//"), "DISC_1");
    EXPECT_EQ(folderLabel("/"), "");
    EXPECT_EQ(folderLabel(""), "");
    EXPECT_TRUE(base::isValidUtf8(folderLabel("/media/\xE9t\xE9")));
}

} // namespace
} // namespace discaro::disc
