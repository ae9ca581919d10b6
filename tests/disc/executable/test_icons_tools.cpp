#include "disc/executable/Executable.h"
#include "disc/executable/VersionResource.h"
#include "support/BufferSource.h"
#include "support/ExecutableBuilder.h"
#include "support/FileResources.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>

// The same files read by wrestool (package icoutils): our own ones, and executables made by other people's compilers
// (package nsis-common).

namespace discaro::disc {

namespace {

using namespace discaro::test;
namespace fs = std::filesystem;

const fs::path kExecutables = "/usr/share/nsis";

std::string outputOf(const std::string& command) {
    struct Close {
        void operator()(std::FILE* pipe) const { pclose(pipe); }
    };
    const std::unique_ptr<std::FILE, Close> pipe(popen((command + " 2>/dev/null").c_str(), "r"));
    std::string output;
    std::array<char, 4096> buffer{};
    for (size_t count = 1; pipe && count > 0; output.append(buffer.data(), count))
        count = std::fread(buffer.data(), 1, buffer.size(), pipe.get());
    return output;
}

std::string contentOf(const fs::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

// Icon groups as wrestool lists them, one line for each language: counted by name.
int64_t listedGroups(const fs::path& path) {
    std::istringstream lines(outputOf("wrestool -l --type=14 '" + path.string() + "'"));
    std::set<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        const auto name = line.find("--name=");
        names.insert(line.substr(name, line.find(' ', name) - name));
    }
    return static_cast<int64_t>(names.size());
}

std::string extractedVersion(const fs::path& path) {
    return outputOf("wrestool -x --raw --type=16 '" + path.string() + "'");
}

std::vector<fs::path> installedExecutables() {
    std::vector<fs::path> paths;
    for (const auto& entry : fs::recursive_directory_iterator(kExecutables)) {
        if (entry.is_regular_file() && contentOf(entry.path()).starts_with("MZ"))
            paths.push_back(entry.path());
    }
    return paths;
}

class IconTools : public testing::Test {
protected:
    IconTools() {
        fs::create_directories(m_folder);
        auto resources = iconResources(6);
        resources.push_back({kGroupIconType, std::string("MAIN"), "group"});
        resources.push_back({kVersionType, uint16_t{1}, wideVersion(sampleVersion())});
        write("wide.exe", peFile(resources, {.wide = true}).bytes);
        write("usual.exe", peFile(resources, {.dataInOwnSection = true}).bytes);
        resources.back().data = narrowVersion(sampleVersion("040904E4"));
        write("old.exe", neFile(resources).bytes);
    }
    ~IconTools() override { fs::remove_all(m_folder); }

    void write(const std::string& name, const std::string& bytes) {
        m_paths.push_back(m_folder / name);
        std::ofstream(m_paths.back(), std::ios::binary) << bytes;
    }

    fs::path m_folder = fs::path(testing::TempDir()) / ("icon-tools-" + std::to_string(getpid()));
    std::vector<fs::path> m_paths;
};

TEST_F(IconTools, SeeAsManyIconGroupsInOurExecutables) {
    for (const auto& path : m_paths) {
        EXPECT_EQ(listedGroups(path), 7) << path << " (wrestool is in the package icoutils)";
        EXPECT_EQ(readResources(BufferSource(contentOf(path))).icons, 7) << path;
    }
}

TEST_F(IconTools, ExtractTheSameVersionResource) {
    for (const auto& path : m_paths) {
        const auto content = contentOf(path);
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
        const auto icons = readResources(BufferSource(contentOf(path))).icons;
        EXPECT_EQ(icons, listedGroups(path)) << path;
        withIcons += icons > 0 ? 1 : 0;
    }
    EXPECT_GE(withIcons, 10);
}

TEST_F(IconTools, AndWeAgreeThatInstalledIconFilesAreOnes) {
    int files = 0;
    for (const auto& entry : fs::recursive_directory_iterator(kExecutables)) {
        if (entry.path().extension() == ".ico") {
            EXPECT_EQ(readResources(BufferSource(contentOf(entry.path()))).icons, 1) << entry.path();
            ++files;
        }
    }
    EXPECT_GE(files, 20) << "the package nsis-common is needed";
}

TEST(InstalledExecutables, CutAnywhereReadSafely) {
    for (const auto& path : installedExecutables()) {
        const auto content = contentOf(path);
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
