#include "disc/ImageHelp.h"
#include "disc/folder/FolderMedium.h"
#include "support/ScratchFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

// Symbolic links in a folder that stands for a disc.
namespace discaro::disc {
namespace {

using test::namesOf;
using test::ScratchFolder;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

class FolderLinks : public testing::Test {
protected:
    FolderLinks() {
        folder.write("target", "twelve bytes");
        ::chmod((folder.path() / "target").c_str(), 0444);
        const std::array<timespec, 2> times = {timespec{1000, 0}, timespec{1000, 0}};
        ::utimensat(AT_FDCWD, (folder.path() / "target").c_str(), times.data(), 0);
        outside.write("elsewhere", "seen by nobody");
    }

    // What a link of this name in the root, or in the directory SUB, leads to.
    struct Linked {
        FileFacts facts;
        std::string content;
    };
    Linked linked(const std::string& name, bool inSub = false) const {
        auto listing = test::rootOf(medium);
        if (inSub)
            listing = medium.list(medium.root(), entryOf(listing.directories, "SUB").place);
        const auto& place = entryOf(listing.files, name).place;
        const auto source = medium.open(medium.root(), place);
        std::string content(source->size(), '?');
        source->read(0, std::as_writable_bytes(std::span(content)));
        return {medium.fileFacts(medium.root(), place), content};
    }
    void link(const fs::path& target, const fs::path& name) const { fs::create_symlink(target, folder.path() / name); }
    void expectTarget(const Linked& found) const {
        EXPECT_EQ(found.facts.size, 12u);
        EXPECT_EQ(found.facts.modified, 1000);
        EXPECT_EQ(found.facts.attributes, attribute::kReadOnly);
        EXPECT_EQ(found.content, "twelve bytes");
    }
    void expectLinkAlone(const Linked& found, const fs::path& target) const {
        EXPECT_EQ(found.facts.size, target.native().size());
        EXPECT_NE(found.facts.modified, 1000);
        EXPECT_EQ(found.content, "");
    }

    static const Entry& entryOf(const std::vector<Entry>& entries, std::string_view name) {
        const auto found = std::ranges::find(entries, name, &Entry::name);
        if (found == entries.end())
            throw std::out_of_range("no entry " + std::string(name));
        return *found;
    }

    ScratchFolder folder;
    ScratchFolder outside;
    FolderMedium medium{folder.path(), FolderMedium::Use::Disc};
};

TEST_F(FolderLinks, AreListedAsFiles) {
    folder.makeFolder("real");
    link("real", "to-folder");
    link("target", "to-file");
    link("nothing-here", "dangling");
    const auto listing = test::rootOf(medium);
    EXPECT_THAT(namesOf(listing.directories), ElementsAre("real"));
    EXPECT_THAT(namesOf(listing.files), UnorderedElementsAre("to-folder", "to-file", "target", "dangling"));
}

TEST_F(FolderLinks, ToAFileInTheFolderHaveItsFactsAndBytes) {
    folder.makeFolder("SUB");
    link("target", "plain");
    link(folder.path() / "target", "absolute");
    link("../target", "SUB/up");
    link("SUB/up", "chain");
    link(folder.path() / "chain", "SUB/absolute-chain");
    for (const auto* name : {"plain", "absolute", "chain"})
        expectTarget(linked(name));
    for (const auto* name : {"up", "absolute-chain"})
        expectTarget(linked(name, true));
}

TEST_F(FolderLinks, ThatLeaveTheFolderHaveTheirOwnFactsAndNoBytes) {
    const auto elsewhere = outside.path() / "elsewhere";
    const auto climbing = fs::path("..") / outside.path().filename() / "elsewhere";
    link(elsewhere, "absolute");
    link(climbing, "relative");
    link("absolute", "chain");
    expectLinkAlone(linked("absolute"), elsewhere);
    expectLinkAlone(linked("relative"), climbing);
    expectLinkAlone(linked("chain"), "absolute");
}

TEST_F(FolderLinks, ThatLeadToNoFileHaveTheirOwnFactsAndNoBytes) {
    folder.makeFolder("real");
    ASSERT_EQ(::mkfifo((folder.path() / "pipe").c_str(), 0600), 0);
    link("real", "to-folder");
    link("nothing-here", "dangling");
    link("loop", "loop");
    link("pipe", "to-pipe");
    link(folder.path() / "endless", "endless");
    link(folder.path(), "to-root");
    expectLinkAlone(linked("to-folder"), "real");
    expectLinkAlone(linked("dangling"), "nothing-here");
    expectLinkAlone(linked("loop"), "loop");
    expectLinkAlone(linked("to-pipe"), "pipe");
    expectLinkAlone(linked("endless"), folder.path() / "endless");
    expectLinkAlone(linked("to-root"), folder.path());
}

} // namespace
} // namespace discaro::disc
