#include "disc/executable/Executable.h"
#include "disc/executable/VersionResource.h"
#include "support/BufferSource.h"
#include "support/ExecutableBuilder.h"
#include "support/FileResources.h"
#include "support/Files.h"
#include "support/ScratchFolder.h"
#include "support/ToolRun.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <sstream>

// The same files read by wrestool (package icoutils): our own ones, and executables made by other people's compilers
// (package nsis-common).

namespace discaro::disc {

namespace {

using namespace discaro::test;
namespace fs = std::filesystem;

const fs::path kExecutables = "/usr/share/nsis";

// Icon groups as wrestool lists them, one line for each language: counted by name.
int64_t listedGroups(const fs::path& path) {
    std::istringstream lines(runTool("wrestool -l --type=14 " + shellWord(path)));
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        const auto name = line.find("--name=");
        names.insert(line.substr(name, line.find(' ', name) - name));
    }
    return static_cast<int64_t>(names.size());
}

std::string extractedVersion(const fs::path& path) {
    return runTool("wrestool -x --raw --type=16 " + shellWord(path));
}

std::vector<fs::path> installedExecutables() {
    std::vector<fs::path> paths;
    for (const auto& entry : fs::recursive_directory_iterator(kExecutables)) {
        if (entry.is_regular_file() && readFile(entry.path()).starts_with("MZ"))
            paths.push_back(entry.path());
    }
    return paths;
}

class IconTools : public testing::Test {
protected:
    IconTools() {
        auto resources = iconResources(6);
        resources.push_back({kGroupIconType, std::string("MAIN"), "group"});
        resources.push_back({kVersionType, uint16_t{1}, wideVersion(sampleVersion())});
        write("wide.exe", peFile(resources, {.wide = true}).bytes);
        write("usual.exe", peFile(resources, {.dataInOwnSection = true}).bytes);
        resources.back().data = narrowVersion(sampleVersion("040904E4"));
        write("old.exe", neFile(resources).bytes);
    }

    void write(const std::string& name, const std::string& bytes) { m_paths.push_back(m_folder.write(name, bytes)); }

    const ScratchFolder m_folder;
    std::vector<fs::path> m_paths;
};

TEST_F(IconTools, SeeAsManyIconGroupsInOurExecutables) {
    for (const auto& path : m_paths) {
        EXPECT_EQ(listedGroups(path), 7) << path << " (wrestool is in the package icoutils)";
        EXPECT_EQ(readResources(BufferSource(readFile(path))).icons, 7) << path;
    }
}

TEST_F(IconTools, ExtractTheSameVersionResource) {
    for (const auto& path : m_paths) {
        const auto content = readFile(path);
        const BufferSource source(content);
        EXPECT_EQ(Executable(source).versionResource(), extractedVersion(path)) << path;
        EXPECT_EQ(versionTexts(extractedVersion(path)), sampleTexts()) << path;
    }
}

TEST_F(IconTools, SeeAsManyIconGroupsInInstalledExecutables) {
    const auto paths = installedExecutables();
    ASSERT_GE(paths.size(), 40U) << "the package nsis-common is needed";
    int withIcons = 0;
    for (const auto& path : paths) {
        const auto icons = readResources(BufferSource(readFile(path))).icons;
        EXPECT_EQ(icons, listedGroups(path)) << path;
        withIcons += icons > 0 ? 1 : 0;
    }
    EXPECT_GE(withIcons, 10);
}

TEST_F(IconTools, AndWeAgreeThatInstalledIconFilesAreOnes) {
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(kExecutables)) {
        if (entry.path().extension() == ".ico") {
            EXPECT_EQ(readResources(BufferSource(readFile(entry.path()))).icons, 1) << entry.path();
            ++files;
        }
    }
    EXPECT_GE(files, 20) << "the package nsis-common is needed";
}

TEST(InstalledExecutables, CutAnywhereReadSafely) {
    for (const auto& path : installedExecutables()) {
        const auto content = readFile(path);
        const auto whole = readResources(BufferSource(content));
        for (size_t length = 0; length < content.size(); length += 64) {
            const BufferSource cut(content.substr(0, length));
            const auto found = readResources(cut);
            ASSERT_LE(found.icons, whole.icons) << path << " cut at " << length;
            ASSERT_LE(cut.bytesAsked(), ExecutableReader::kReadLimit) << path << " cut at " << length;
        }
    }
}

} // namespace

} // namespace discaro::disc
