#include "app/Module1.h"
#include "scanner/core/ScanRig.h"
#include "support/ExecutableBuilder.h"
#include "support/Files.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

// A folder that is scanned as a disc.
namespace discaro::test {
namespace {

namespace fs = std::filesystem;

class FolderScan : public testing::Test {
protected:
    FolderScan()
        : path(app::Module1::ApplicationPath / "disc") {
        fs::create_directory(path);
    }

    void write(const fs::path& name, const std::string& content) const { writeFile(path / name, content); }
    void scan(const char* level = "basic", const char* errorAction = "ignore") {
        rig.letter = rig.drives.addImageOrFolder(path);
        rig.scan({.DetailLevel = level, .ErrorAction = errorAction, .LogErrors = "true", .UseFreeNumber = {}});
        EXPECT_EQ(rig.watcher.log.back(), "finished");
    }
    std::string of(const std::string& name, std::string_view field) {
        return rig.field("files", "[file name] = '" + name + "'", field);
    }

    ScanRig rig;
    fs::path path;
};

TEST_F(FolderScan, TheSizeOfTheDiscIsTheSumOfItsFiles) {
    write("A.BIN", std::string(1 << 20, 'a'));
    write("SUB/B.BIN", std::string(1 << 19, 'b'));
    scan();
    EXPECT_EQ(rig.field("drive", {}, "Total Size"), "1.5");
    EXPECT_EQ(rig.field("drive", {}, "free size"), "0");
}

TEST_F(FolderScan, AnEmptyFolderHasASizeOfNothing) {
    scan("minimal");
    EXPECT_FALSE(rig.isNull("drive", {}, "Total Size"));
    EXPECT_EQ(rig.field("drive", {}, "Total Size"), "0");
}

TEST_F(FolderScan, TheSizeCountsAtMinimalDetailToo) {
    write("A.BIN", std::string(1 << 20, 'a'));
    scan("minimal");
    EXPECT_EQ(rig.field("drive", {}, "Total Size"), "1");
}

TEST_F(FolderScan, ThatIsStoppedLeavesNoSize) {
    write("A.BIN", "a");
    rig.letter = rig.drives.addImageOrFolder(path);
    rig.watcher.atYield = [](int) { app::Module1::ScanCancelled = 1; };
    rig.scan();
    EXPECT_EQ(rig.count("drive"), 0);
}

TEST_F(FolderScan, LinksPipesAndTheirLikeAreNoErrors) {
    write("real/file.exe", peFile(iconResources(3)).bytes);
    fs::create_symlink("real/file.exe", path / "inside.exe");
    fs::create_symlink("/dev/null", path / "outside.exe");
    fs::create_symlink("nothing", path / "dangling.exe");
    ASSERT_EQ(::mkfifo((path / "pipe.exe").c_str(), 0600), 0);
    scan("all", "cancel");
    EXPECT_EQ(rig.watcher.prompts, 0);
    EXPECT_EQ(rig.errorLog, "");
    EXPECT_EQ(rig.count("files"), 5);
    EXPECT_EQ(of("inside.exe", "number of icons"), "3");
    EXPECT_EQ(of("inside.exe", "file size"), of("file.exe", "file size"));
    EXPECT_EQ(of("outside.exe", "file size"), "0.0087890625") << "nine bytes of path";
    for (const char* name : {"outside.exe", "dangling.exe", "pipe.exe"}) {
        EXPECT_EQ(of(name, "number of icons"), "0") << name;
        EXPECT_EQ(of(name, "file date").size(), 8u) << name;
    }
}

// Whether another process finds the file locked. In this one, closing the file would give up the lock.
bool isLockedForOthers(const fs::path& path) {
    const pid_t child = ::fork();
    if (child == 0) {
        struct flock lock {};
        lock.l_type = F_WRLCK;
        const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
        ::_exit(::fcntl(file, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 1;
}

TEST_F(FolderScan, OfTheCataloguesOwnFolderKeepsOthersLockedOutToTheEnd) {
    const fs::path catalogue = app::Module1::cataloguePath();
    path = catalogue.parent_path();
    fs::create_hard_link(catalogue, path / "setup.ini");
    fs::create_symlink("kvt.mde", path / "link.exe");
    write("Z.BIN", "z");
    int yields = 0;
    int open = 0;
    rig.watcher.atYield = [&](int) {
        ++yields;
        open += isLockedForOthers(catalogue) ? 0 : 1;
    };
    scan("all");
    EXPECT_GT(yields, 4);
    EXPECT_EQ(open, 0);
    EXPECT_EQ(rig.errorLog, "");
    EXPECT_NE(of("kvt.mde", "file size"), "0");
    EXPECT_EQ(of("link.exe", "file size"), of("kvt.mde", "file size"));
    EXPECT_FALSE(isLockedForOthers(catalogue));
}

} // namespace
} // namespace discaro::test
