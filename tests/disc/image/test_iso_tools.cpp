#include "disc/ImageHelp.h"
#include "support/Files.h"
#include "support/ScratchFolder.h"
#include "support/ToolRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>
#include <sstream>

// Images that the usual writers make, and what the usual readers find in images.

namespace discaro::disc {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

// A folder "tree" to make images of, and the images beside it.
class Tools : public testing::Test {
protected:
    void file(const std::string& name, const std::string& content = "x") { m_folder.write("tree/" + name, content); }

    void folder(const std::string& name) { m_folder.makeFolder("tree/" + name); }

    std::unique_ptr<Medium> genisoimage(const std::string& options) {
        runTool("genisoimage -quiet " + options + " -o image.iso tree", m_folder.path());
        return openImage(m_folder.path() / "image.iso");
    }

    std::unique_ptr<Medium> xorriso(const std::string& options) {
        runTool("xorriso -as mkisofs -quiet " + options + " -o image.iso tree", m_folder.path());
        return openImage(m_folder.path() / "image.iso");
    }

    // Relative path and content of all files, an empty content for directories, as they are in the folder.
    std::map<std::string, std::string> source() const {
        std::map<std::string, std::string> found;
        const auto top = m_folder.path() / "tree";
        for (const auto& entry : fs::recursive_directory_iterator(top)) {
            const auto name = fs::relative(entry.path(), top).string();
            if (entry.is_directory())
                found[name + "/"] = "";
            else
                found[name] = readFile(entry.path());
        }
        return found;
    }

    static std::map<std::string, std::string> contentsOf(const Medium& medium) {
        std::map<std::string, std::string> found;
        const auto walked = walk(medium);
        EXPECT_THAT(walked.damage, IsEmpty());
        for (const auto& entry : walked.entries)
            found[entry.path + (entry.isDirectory ? "/" : "")] = entry.isDirectory ? "" : contentOf(medium, entry);
        return found;
    }

    const ScratchFolder m_folder;
};

std::string noise(size_t length) {
    std::string text;
    uint32_t state = 12345;
    while (text.size() < length) {
        state = state * 1664525 + 1013904223;
        text += static_cast<char>(state >> 24);
    }
    return text;
}

TEST_F(Tools, RockRidgeImagesHaveTheFoldersNamesAndContents) {
    file("Long name with blanks, and more.text", noise(100000));
    file("sub/second level/UPPER and lower", noise(2048));
    file("sub/.hidden by its dot", noise(2047));
    file("sub/empty file", "");
    file("naïve 漢字 🎵.txt", noise(5));
    folder("empty folder");
    EXPECT_EQ(contentsOf(*genisoimage("-R")), source());
    EXPECT_EQ(contentsOf(*xorriso("-R")), source());
}

TEST_F(Tools, JolietImagesHaveTheFoldersNamesAndContents) {
    file("Long name with blanks.text", noise(100000));
    file("sub/second level/UPPER and lower", noise(2048));
    file("naïve 漢字.txt", noise(5));
    folder("empty folder");
    EXPECT_EQ(contentsOf(*genisoimage("-J -input-charset utf-8")), source());
    EXPECT_EQ(contentsOf(*xorriso("-J")), source());
    EXPECT_EQ(contentsOf(*genisoimage("-J -R -input-charset utf-8")), source());
    EXPECT_EQ(contentsOf(*xorriso("-J -R")), source());
}

TEST_F(Tools, PlainImagesOfAllLevelsHaveTheirNames) {
    file("README.TXT", "read me");
    file("MAKEFILE", "make");
    file("SUBDIR/DATA.DAT", noise(3000));
    for (const char* level : {"1", "2", "3"}) {
        EXPECT_EQ(contentsOf(*genisoimage("-iso-level " + std::string(level))), source()) << level;
        EXPECT_EQ(contentsOf(*xorriso("--norock -iso-level " + std::string(level))), source()) << level;
    }
}

TEST_F(Tools, LevelOneCutsLongNames) {
    file("ALONGERNAME.TEXT", "x");
    EXPECT_THAT(walk(*genisoimage("-iso-level 1")).paths(), ElementsAre("ALONGERN.TEX"));
    EXPECT_THAT(walk(*genisoimage("-iso-level 3")).paths(), ElementsAre("ALONGERNAME.TEXT"));
}

TEST_F(Tools, VersionNumbersLeftOutByTheWriterAreNoMatter) {
    file("README.TXT", "x");
    file("NOEXT", "x");
    EXPECT_THAT(walk(*genisoimage("-N -d")).paths(), ElementsAre("NOEXT", "README.TXT"));
}

TEST_F(Tools, HiddenFilesAreListedAndMarked) {
    file("SEEN.TXT");
    file("UNSEEN.TXT");
    folder("SECRET");
    const auto medium = genisoimage("-hidden UNSEEN.TXT -hidden SECRET");
    const auto found = walk(*medium);
    EXPECT_THAT(found.paths(), ElementsAre("SECRET/", "SEEN.TXT", "UNSEEN.TXT"));
    EXPECT_EQ(found.find("SEEN.TXT")->facts.attributes, attribute::kReadOnly);
    EXPECT_EQ(found.find("UNSEEN.TXT")->facts.attributes, attribute::kReadOnly | attribute::kHidden);
    const auto secret = medium->fileFacts(medium->root(), found.find("SECRET")->place);
    EXPECT_EQ(secret.attributes, attribute::kReadOnly | attribute::kHidden | attribute::kDirectory);
}

TEST_F(Tools, DeepDirectoriesThatTheWriterMovedAreListedWhereTheyBelong) {
    file("1/2/3/4/5/6/7/8/9/10/11/12/deep.txt", noise(3000));
    file("1/2/3/4/5/6/7/8b/also.txt", "also");
    auto expected = source();
    EXPECT_EQ(contentsOf(*xorriso("-R")), expected);
    expected["rr_moved/"] = "";
    EXPECT_EQ(contentsOf(*genisoimage("-R")), expected);
}

TEST_F(Tools, DeepDirectoriesInTheJolietTreeStandWhereTheyAre) {
    file("1/2/3/4/5/6/7/8/9/10/deep.txt", "deep");
    EXPECT_EQ(contentsOf(*genisoimage("-J -D")), source());
}

TEST_F(Tools, NamesOf255BytesAreWhole) {
    file(std::string(255, 'n'), "long");
    file(std::string(100, 'd') + "/" + std::string(251, 'm') + ".txt", "longer");
    EXPECT_EQ(contentsOf(*xorriso("-R")), source());
    // This writer ends names at 248 bytes.
    EXPECT_EQ(walk(*genisoimage("-R")).entries.size(), 3U);
}

TEST_F(Tools, NamesThatAreNotUtf8ReadAsWindows1252) {
    file("\xDC"
         "bung.txt",
         "x");
    EXPECT_THAT(walk(*genisoimage("-R")).paths(), ElementsAre("Übung.txt"));
    EXPECT_EQ(walk(*xorriso("-R")).entries.at(0).place.raw, "\xDC"
                                                            "bung.txt");
}

void expectLinks(const Medium& medium, const std::vector<std::string>& links) {
    const auto found = walk(medium);
    EXPECT_THAT(found.damage, IsEmpty());
    for (const auto& link : links) {
        ASSERT_NE(found.find(link), nullptr) << link;
        EXPECT_FALSE(found.find(link)->isDirectory);
        EXPECT_EQ(found.find(link)->facts.size, 0U);
    }
    EXPECT_EQ(found.entries.size(), links.size() + 2) << "the target folder and its file";
}

TEST_F(Tools, SymbolicLinksAreFilesOfNoLengthAndAreNotFollowed) {
    file("target/file.txt", noise(1000));
    fs::create_symlink("target", m_folder.path() / "tree/link");
    fs::create_symlink("..", m_folder.path() / "tree/target/up");
    expectLinks(*genisoimage("-R"), {"link", "target/up"});
    std::string farAway;
    for (int i = 0; i < 60; ++i)
        farAway += "folder " + std::to_string(i) + "/";
    fs::create_symlink(farAway, m_folder.path() / "tree/far");
    expectLinks(*xorriso("-R"), {"link", "target/up", "far"});
}

TEST_F(Tools, StampsAreTheFiles) {
    file("a.txt");
    runTool("TZ=UTC touch -d '1999-12-31 23:59:58' tree/a.txt", m_folder.path());
    constexpr std::time_t kStamp = 946684798;
    for (const char* options : {"-R", "-J", "-R -J"}) {
        EXPECT_EQ(onlyFile(*genisoimage(options)).modified, kStamp) << options;
        EXPECT_EQ(onlyFile(*xorriso(options)).modified, kStamp) << options;
    }
}

TEST_F(Tools, TheLabelIsTheOneGiven) {
    file("a.txt");
    EXPECT_EQ(genisoimage("-R -V 'MY_DISC_1998'")->facts().label, "MY_DISC_1998");
    EXPECT_EQ(genisoimage("-J -V 'Gemischt 1998'")->facts().label, "Gemischt 1998");
    EXPECT_EQ(xorriso("-J -R -V 'Mixed Case'")->facts().label, "Mixed Case");
    EXPECT_EQ(genisoimage("-R -V ''")->facts().label, "");
}

TEST_F(Tools, ManyFilesInOneDirectoryAreAllListed) {
    for (int i = 0; i < 1000; ++i)
        file("many/file " + std::to_string(i), std::to_string(i));
    EXPECT_EQ(contentsOf(*genisoimage("-R")), source());
    EXPECT_EQ(contentsOf(*xorriso("-J")), source());
}

TEST_F(Tools, ImagesThatBootAndHybridOnesAreRead) {
    file("boot/loader.img", noise(4096));
    file("readme.txt", "x");
    for (const char* options : {"-b boot/loader.img -no-emul-boot -c boot/catalog",
                                "-b boot/loader.img -no-emul-boot -c boot/catalog -partition_offset 16"}) {
        const auto found = contentsOf(*xorriso("-R " + std::string(options)));
        EXPECT_EQ(found.at("boot/loader.img"), noise(4096));
        EXPECT_TRUE(found.contains("boot/catalog"));
    }
}

TEST_F(Tools, ASecondSessionWrittenOverTheFirstIsTheOneThatIsRead) {
    file("first.txt", "first");
    xorriso("-R");
    file("second.txt", "second");
    runTool("xorriso -dev image.iso -map tree / -commit", m_folder.path());
    EXPECT_EQ(contentsOf(*openImage(m_folder.path() / "image.iso")), source());
}

// Universal disk format

TEST_F(Tools, BridgeImagesAreReadThroughTheirIsoSide) {
    file("Some file.txt", noise(5000));
    const auto medium = genisoimage("-udf -R -J");
    EXPECT_EQ(medium->facts().fileSystem, "CDFS");
    EXPECT_EQ(contentsOf(*medium), source());
}

// The image with its ISO 9660 descriptors wiped.
std::string withoutIsoSide(const fs::path& path) {
    std::string image = readFile(path);
    for (size_t at = 16 * 2048; image.compare(at + 1, 5, "CD001") == 0; at += 2048)
        image.replace(at, 2048, std::string(2048, '\0'));
    return image;
}

TEST_F(Tools, TheUdfSideOfABridgeHasTheSameFiles) {
    file("Some file with a long name, in mixed case.text", noise(5000));
    file("sub/second level/another", noise(100000));
    file("naïve 漢字.txt", noise(5));
    file("sub/empty", "");
    folder("empty folder");
    for (int i = 0; i < 500; ++i)
        file("many/file " + std::to_string(i), std::to_string(i));
    genisoimage("-udf -R -J -V BRIDGE -input-charset utf-8");
    const auto medium = openBytes(withoutIsoSide(m_folder.path() / "image.iso"));
    EXPECT_EQ(medium->facts().fileSystem, "UDF");
    EXPECT_EQ(medium->facts().label, "BRIDGE");
    EXPECT_EQ(contentsOf(*medium), source());
}

TEST_F(Tools, StampsOfTheUdfSideAreTheFiles) {
    file("a.txt");
    runTool("TZ=UTC touch -d '1999-12-31 23:59:58' tree/a.txt", m_folder.path());
    genisoimage("-udf -R -J");
    EXPECT_EQ(onlyFile(*openBytes(withoutIsoSide(m_folder.path() / "image.iso"))).modified, 946684798);
}

// Images of others, entry by entry beside what other readers find

struct Found {
    bool isDirectory;
    uint64_t size;

    bool operator==(const Found&) const = default;
};

void PrintTo(const Found& found, std::ostream* stream) {
    *stream << (found.isDirectory ? "directory" : "file of ") << (found.isDirectory ? 0 : found.size);
}

std::map<std::string, Found> foundIn(const Medium& medium) {
    std::map<std::string, Found> result;
    for (const auto& entry : walk(medium).entries)
        result["/" + entry.path] = {entry.isDirectory, entry.isDirectory ? 0 : entry.facts.size};
    return result;
}

// What isoinfo -l prints: "Directory listing of /PATH/", then lines with a type in front, the size as the fifth word
// and the name behind the bracket that holds extent and flags.
std::map<std::string, Found> foundByIsoinfo(const fs::path& image, const std::string& options) {
    std::map<std::string, Found> result;
    std::istringstream output(runTool("isoinfo " + options + " -l -i " + shellWord(image), testing::TempDir()));
    std::string folder;
    for (std::string line; std::getline(output, line);) {
        constexpr std::string_view kHead = "Directory listing of ";
        if (line.starts_with(kHead)) {
            folder = line.substr(kHead.size());
            continue;
        }
        const auto bracket = line.find("] ");
        if (bracket == std::string::npos)
            continue;
        std::string name = line.substr(bracket + 2);
        name.erase(0, name.find_first_not_of(' '));
        name.erase(name.find_last_not_of(' ') + 1);
        if (name == "." || name == "..")
            continue;
        std::istringstream words(line);
        std::string word;
        uint64_t size = 0;
        words >> word >> word >> word >> word >> size;
        const bool isDirectory = line[0] == 'd';
        result[folder + name] = {isDirectory, isDirectory ? 0 : size};
    }
    return result;
}

std::map<std::string, Found> foundByXorriso(const fs::path& image) {
    std::map<std::string, Found> result;
    std::istringstream output(
        runTool("xorriso -indev " + shellWord(image) + " -find / -exec lsdl --", testing::TempDir()));
    for (std::string line; std::getline(output, line);) {
        std::istringstream words(line);
        std::string mode, word;
        uint64_t size = 0;
        words >> mode >> word >> word >> word >> size;
        const auto quote = line.find('\'');
        if (quote == std::string::npos)
            continue;
        const auto name = line.substr(quote + 1, line.rfind('\'') - quote - 1);
        if (name != "/")
            result[name] = {mode[0] == 'd', mode[0] == 'd' || mode[0] == 'l' ? 0 : size};
    }
    return result;
}

TEST(OtherReaders, FindTheSameOnARescueDisc) {
    const fs::path image = "/usr/lib/grub-rescue/grub-rescue-cdrom.iso";
    const auto ours = foundIn(*openImage(image));
    EXPECT_GT(ours.size(), 200U);
    EXPECT_EQ(ours, foundByXorriso(image));
    EXPECT_EQ(ours, foundByIsoinfo(image, "-R"));
}

TEST(OtherReaders, FindTheSameOnAMemoryTestDisc) {
    const fs::path image = "/usr/lib/memtest86+/memtest86+x64.iso";
    const auto ours = foundIn(*openImage(image));
    EXPECT_FALSE(ours.empty());
    EXPECT_EQ(ours, foundByIsoinfo(image, "-J"));
}

TEST_F(Tools, OtherReadersFindTheSameInAllKindsOfNames) {
    for (const char* name : {"README.TXT", "Makefile", "a long name.tar.gz", "sub/x", "sub/deeper/y.c", "two.dots.txt"})
        file(name, noise(1234));
    folder("nothing");
    const auto image = m_folder.path() / "image.iso";
    const auto rockRidge = foundIn(*genisoimage("-R"));
    EXPECT_EQ(rockRidge, foundByIsoinfo(image, "-R"));
    EXPECT_EQ(rockRidge, foundByXorriso(image));
    const auto joliet = foundIn(*genisoimage("-J"));
    EXPECT_EQ(joliet, foundByIsoinfo(image, "-J"));
    const auto both = foundIn(*xorriso("-J -R"));
    EXPECT_EQ(both, foundByIsoinfo(image, "-J"));
}

} // namespace
} // namespace discaro::disc
