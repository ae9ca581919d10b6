#include "disc/ListerFixture.h"

#include <array>
#include <string>

namespace discaro::disc {
namespace {

using testing::IsEmpty;

std::string contentOf(const ByteSource& source) {
    std::string text(source.size(), '?');
    text.resize(source.read(0, std::as_writable_bytes(std::span(text))));
    return text;
}

class ListerFiles : public ListerFixture {
protected:
    void SetUp() override {
        medium = &insert(folder(
            "", {file("zeta.txt", "z"), file("AUTORUN.INF", "[autorun]"), file(".hidden", "12").withAttributes(3),
                 folder("SETUP", {file("Setup.Ini", "ini").withTime(77), file("big.bin").withSize(5'000'000'000)}),
                 folder("EMPTY")}));
        lister.setPath("D:\\");
    }

    test::MemoryMedium* medium = nullptr;
};

TEST_F(ListerFiles, AreCountedInTheChosenDirectory) {
    lister.setFilePath("D:\\");
    EXPECT_EQ(lister.fileCount(), 3);
    lister.setFilePath("D:\\SETUP");
    EXPECT_EQ(lister.fileCount(), 2);
    EXPECT_EQ(lister.path(), "D:\\");
    lister.setFilePath("D:\\EMPTY");
    EXPECT_EQ(lister.fileCount(), 0);
}

TEST_F(ListerFiles, CountingTheCurrentDirectoryReadsNothing) {
    const int before = medium->calls(Asked::List);
    lister.setFilePath(lister.path());
    lister.setFilePath("D:");
    EXPECT_EQ(medium->calls(Asked::List), before);
    EXPECT_EQ(medium->calls(Asked::Facts), 0);
}

TEST_F(ListerFiles, TheChosenDirectoryStaysWhenTheListerMoves) {
    lister.setPath("D:\\SETUP");
    lister.setFilePath("D:\\SETUP");
    lister.setPath("D:\\EMPTY");
    EXPECT_EQ(lister.fileCount(), 2);
}

TEST_F(ListerFiles, AChosenDirectoryThatIsNotThereThrowsAndChangesNothing) {
    lister.setFilePath("D:\\");
    for (const auto* path : {"D:\\NO", "X:\\", "", "nonsense"})
        EXPECT_EQ(errorOf([&] { lister.setFilePath(path); }), numberOf(ErrorNumber::PathMissing)) << path;
    EXPECT_EQ(lister.fileCount(), 3);
}

TEST_F(ListerFiles, AreEnumeratedInTheMediumsOrder) {
    EXPECT_THAT(files("D:"), ElementsAre("zeta.txt", "AUTORUN.INF", ".hidden"));
    EXPECT_THAT(files("D:\\"), ElementsAre("zeta.txt", "AUTORUN.INF", ".hidden"));
    EXPECT_THAT(files("D:\\SETUP"), ElementsAre("Setup.Ini", "big.bin"));
    EXPECT_THAT(files("D:\\EMPTY"), IsEmpty());
}

TEST_F(ListerFiles, EnumeratingBeginsAnewAndEndsForGood) {
    EXPECT_EQ(lister.firstFile("D:"), "zeta.txt");
    EXPECT_EQ(lister.nextFile(), "AUTORUN.INF");
    EXPECT_EQ(lister.firstFile("D:"), "zeta.txt");
    EXPECT_EQ(lister.nextFile(), "AUTORUN.INF");
    EXPECT_EQ(lister.nextFile(), ".hidden");
    EXPECT_EQ(lister.nextFile(), "");
    EXPECT_EQ(lister.nextFile(), "");
}

TEST_F(ListerFiles, EnumeratingWhatIsNotThereGivesNothing) {
    for (const auto* path : {"D:\\NO", "X:\\", "", "D:\\zeta.txt"})
        EXPECT_EQ(lister.firstFile(path), "") << path;
    EXPECT_EQ(lister.nextFile(), "");
}

TEST_F(ListerFiles, MovingDoesNotDisturbTheEnumeration) {
    lister.setPath("D:\\SETUP");
    EXPECT_EQ(lister.firstFile("D:\\SETUP"), "Setup.Ini");
    lister.setPath("D:\\EMPTY");
    EXPECT_EQ(lister.fileTime("D:\\SETUP\\Setup.Ini"), 77);
    EXPECT_EQ(lister.nextFile(), "big.bin");
    EXPECT_EQ(lister.fileLength("D:\\SETUP\\big.bin"), 5'000'000'000u);
}

TEST_F(ListerFiles, FactsOfTheEnumeratedFileAreReadOnce) {
    lister.firstFile("D:");
    EXPECT_EQ(medium->calls(Asked::Facts), 0);
    EXPECT_EQ(lister.fileLength("D:\\zeta.txt"), 1u);
    EXPECT_EQ(lister.fileTime("D:\\zeta.txt"), 1040812215);
    EXPECT_EQ(lister.fileAttributes("D:\\zeta.txt"), attribute::kReadOnly);
    EXPECT_EQ(lister.fileLength("D:\\zeta.txt"), 1u);
    EXPECT_EQ(medium->calls(Asked::Facts), 1);
    EXPECT_EQ(medium->calls(Asked::List), 1);
    lister.nextFile();
    EXPECT_EQ(lister.fileLength("D:\\AUTORUN.INF"), 9u);
    EXPECT_EQ(medium->calls(Asked::Facts), 2);
}

TEST_F(ListerFiles, FactsOfOtherFilesAreFound) {
    lister.firstFile("D:");
    EXPECT_EQ(lister.fileLength("D:\\SETUP\\setup.ini"), 3u);
    EXPECT_EQ(lister.fileAttributes("d:\\.HIDDEN"), attribute::kReadOnly | attribute::kHidden);
    for (const auto* path :
         {"D:\\NO.TXT", "D:\\SETUP", "D:\\SETUP\\", "D:\\", "D:", "", "zeta.txt", "X:\\zeta.txt", "D:zeta.txt"})
        EXPECT_EQ(errorOf([&] { lister.fileLength(path); }), numberOf(ErrorNumber::PathMissing)) << path;
}

TEST_F(ListerFiles, FactsAreForgottenWhenTheEnumerationGoesOn) {
    lister.firstFile("D:");
    EXPECT_EQ(lister.fileLength("D:\\zeta.txt"), 1u);
    lister.nextFile();
    EXPECT_EQ(lister.fileLength("D:\\zeta.txt"), 1u);
    EXPECT_EQ(medium->calls(Asked::Facts), 2);
}

TEST_F(ListerFiles, ExistWithoutRegardToCaseAndWithDoubledBackslashes) {
    for (const auto* path : {"D:\\autorun.inf", "d:\\AutoRun.Inf", "D:\\\\autorun.inf", "D:\\SETUP\\\\setup.ini",
                             "D:\\setup\\setup.ini", "D:\\zeta.txt"})
        EXPECT_TRUE(lister.hasFile(path)) << path;
    for (const auto* path :
         {"D:\\no.inf", "D:\\SETUP", "D:\\EMPTY\\setup.ini", "D:\\NO\\setup.ini", "X:\\a", "", "D:", "\\", "D:\\"})
        EXPECT_FALSE(lister.hasFile(path)) << path;
}

TEST_F(ListerFiles, OpenWithoutRegardToCaseAndWithDoubledBackslashes) {
    EXPECT_EQ(contentOf(*lister.openFile("D:\\\\AUTORUN.INF")), "[autorun]");
    EXPECT_EQ(contentOf(*lister.openFile("D:\\setup\\\\SETUP.INI")), "ini");
    EXPECT_EQ(errorOf([&] { lister.openFile("D:\\NO.INF"); }), numberOf(ErrorNumber::PathMissing));
    EXPECT_EQ(errorOf([&] { lister.openFile("D:\\SETUP"); }), numberOf(ErrorNumber::PathMissing));
}

TEST_F(ListerFiles, LookingUpAFileDoesNotMove) {
    lister.firstFile("D:");
    EXPECT_TRUE(lister.hasFile("D:\\SETUP\\setup.ini"));
    EXPECT_EQ(lister.path(), "D:\\");
    EXPECT_EQ(lister.nextFile(), "AUTORUN.INF");
}

TEST_F(ListerFiles, AnOpenFileOutlivesListerAndTable) {
    std::unique_ptr<ByteSource> source;
    {
        DriveTable drives([] { return Computer{}; });
        drives.addMedium(std::make_unique<test::MemoryMedium>(folder("", {file("KEPT", "still here")})));
        Lister shortLived(drives);
        source = shortLived.openFile("D:\\KEPT");
    }
    EXPECT_EQ(contentOf(*source), "still here");
}

TEST_F(ListerFiles, OfTheSameNameAreEachEnumeratedWithTheirOwnFacts) {
    insert(folder("", {file("SAME", "1"), file("SAME", "22"), file("SAME", "333")}));
    lister.setPath("E:\\");
    std::vector<uint64_t> lengths;
    std::vector<std::string> contents;
    for (auto name = lister.firstFile("E:"); !name.empty(); name = lister.nextFile()) {
        lengths.push_back(lister.fileLength("E:\\" + name));
        contents.push_back(contentOf(*lister.openFile("E:\\" + name)));
    }
    EXPECT_THAT(lengths, ElementsAre(1u, 2u, 3u));
    EXPECT_THAT(contents, ElementsAre("1", "22", "333"));
    EXPECT_EQ(lister.fileLength("E:\\SAME"), 1u);
}

TEST_F(ListerFiles, ThatDifferInCaseOnlyAreFoundByTheExactName) {
    insert(folder("", {file("name", "1"), file("NAME", "22")}));
    EXPECT_EQ(lister.fileLength("E:\\NAME"), 2u);
    EXPECT_EQ(lister.fileLength("E:\\name"), 1u);
    EXPECT_EQ(lister.fileLength("E:\\Name"), 1u);
}

TEST_F(ListerFiles, OfAWholeTreeCostOneListingAndOneLookEach) {
    MemoryNode root = folder("");
    for (int d = 0; d < 20; ++d) {
        MemoryNode directory = folder("D" + std::to_string(d));
        for (int f = 0; f < 30; ++f)
            directory.children.push_back(file("F" + std::to_string(f)).withSize(1));
        root.children.push_back(directory);
    }
    const auto& tree = insert(root);
    lister.setPath("E:\\");
    uint64_t total = 0;
    for (int d = 0; d < 20; ++d) {
        lister.setPath(lister.list(d));
        lister.setFilePath(lister.path());
        EXPECT_EQ(lister.fileCount(), 30);
        for (auto name = lister.firstFile(lister.path()); !name.empty(); name = lister.nextFile())
            total += lister.fileLength(lister.path() + "\\" + name);
        lister.setPath(lister.list(-2));
    }
    EXPECT_EQ(total, 600u);
    EXPECT_EQ(tree.calls(Asked::List), 21);
    EXPECT_EQ(tree.calls(Asked::Facts), 600);
}

} // namespace
} // namespace discaro::disc
