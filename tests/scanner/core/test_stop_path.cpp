#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "scanner/core/ScanRig.h"

#include <gtest/gtest.h>

#include <algorithm>

// A stopped scan, seen from within before its transaction ends: what is still written, and how the walk gets out.
namespace discaro::test {
namespace {

using Texts = std::vector<std::string>;

MemoryNode disc() {
    return folder("", {file("A.TXT", "a"), file("B.TXT", "b"), folder("S1", {file("C.TXT"), folder("X"), folder("Y")}),
                       folder("S2", {file("D.TXT")})});
}

scanner::ScanOptions action(const char* errorAction) {
    return {.DetailLevel = "basic", .ErrorAction = errorAction, .LogErrors = "true", .UseFreeNumber = {}};
}

class StopPath : public testing::Test {
protected:
    // Stops the scan at the save of the file of this number, or of the directory row of this number: a directory is
    // saved when it is begun and when it is complete.
    void stopAtSave(db::DataSource& source, int save) {
        source.beforeUpdate = [save, saves = 0]() mutable {
            if (++saves == save)
                app::Module1::ScanCancelled = 1;
        };
    }

    void scan(const char* errorAction, MemoryNode node = disc()) {
        rig.insert(std::move(node));
        rig.watcher.atYield = [this](int) { noteNumber(); };
        rig.watcher.whenStopped = [this] {
            fileNames = rig.column("files", "file name");
            directoryIds = rig.column("directories", "id number");
            parents = rig.column("directories", "Parent id");
            lastNumber = rig.engine->DirectoryNumber();
            rig.close();
        };
        rig.scan(action(errorAction));
        ASSERT_EQ(rig.watcher.log.back(), "stopped");
        EXPECT_EQ(rig.count("drive") + rig.count("directories") + rig.count("files"), 0);
    }

    void noteNumber() {
        const std::string& number = rig.engine->DirectoryNumber();
        if (app::Module1::ScanCancelled == 1 && (numbers.empty() || numbers.back() != number))
            numbers.push_back(number);
    }

    ScanRig rig;
    // At the end of the walk, before the transaction ended:
    Texts fileNames, directoryIds, parents;
    std::string lastNumber;
    Texts numbers; // of the directories in hand after the stop, one behind the other
};

} // namespace

TEST_F(StopPath, TheFileInHandIsSavedAndShown) {
    stopAtSave(rig.files, 1);
    scan("ignore");
    EXPECT_EQ(fileNames, Texts{"A.TXT"});
    EXPECT_EQ(rig.watcher.counters, (std::vector<double>{1, 3}));
    EXPECT_EQ(rig.watcher.bars, (Texts{"disc", "disc tip", "directory", "directory tip"}));
    EXPECT_EQ(rig.errorLog, "");
}

TEST_F(StopPath, AFileThatIsNotYetBegunIsShownAndNotSaved) {
    rig.insert(disc());
    Texts saved;
    // The walk yields as it enters the root, as it begins with the files, and before each of them.
    rig.watcher.atYield = [](int number) {
        if (number == 3)
            app::Module1::ScanCancelled = 1;
    };
    rig.watcher.whenStopped = [&] { saved = rig.column("files", "file name"); };
    rig.scan(action("ignore"));
    EXPECT_EQ(saved, Texts{});
    EXPECT_EQ(rig.watcher.counters, (std::vector<double>{1, 3}));
}

TEST_F(StopPath, TheDirectoryInHandKeepsTheTwoFieldsThatItBeganWith) {
    stopAtSave(rig.files, 3);
    scan("ignore");
    EXPECT_EQ(fileNames, (Texts{"A.TXT", "B.TXT", "C.TXT"}));
    EXPECT_EQ(directoryIds, (Texts{"C1D1", "C1D1S1"}));
    EXPECT_EQ(parents, (Texts{"R", ""})) << "the root was complete, S1 is not";
}

TEST_F(StopPath, NothingIsWrittenOfTheRestWhileTheNumberStillGrows) {
    stopAtSave(rig.files, 1);
    scan("ignore");
    EXPECT_EQ(directoryIds, Texts{"C1D1"});
    EXPECT_EQ(parents, Texts{""});
    // The level below returns at once without going up, so the second pass goes into the second directory of S1.
    EXPECT_EQ(numbers, (Texts{"C1D1", "C1D1S1", "C1D1S1S2"}));
    EXPECT_EQ(lastNumber, "C1D1S1") << "the root's last step cuts one place";
    EXPECT_EQ(rig.errorLog, "");
}

TEST_F(StopPath, InTheMiddleOfTheTreePassesThroughTheCallersLoopsToo) {
    stopAtSave(rig.files, 3);
    scan("ignore");
    EXPECT_EQ(numbers, (Texts{"C1D1S1", "C1D1S1S1", "C1D1S1S1S2"}));
    EXPECT_EQ(rig.errorLog, "\r\n\r\nThe value is out of range in Directory :- " + rig.root + "S1\\X")
        << "X has no second directory";
}

namespace {

// S1 has no directories, so that the walk, which stays in it, finds no second one.
MemoryNode discWithPlainDirectories() {
    return folder("", {file("A.TXT"), folder("S1"), folder("S2"), folder("S3")});
}

std::string missedDirectory(const ScanRig& rig) {
    return "\r\n\r\nThe value is out of range in Directory :- " + rig.root + "S1";
}

} // namespace

TEST_F(StopPath, AnErrorOnTheWayOutIsLoggedAndUnderIgnorePassedOver) {
    stopAtSave(rig.files, 1);
    scan("ignore", discWithPlainDirectories());
    EXPECT_EQ(rig.errorLog, missedDirectory(rig) + missedDirectory(rig));
    EXPECT_EQ(rig.watcher.prompts, 0);
    EXPECT_EQ(numbers, (Texts{"C1D1", "C1D1S1", "C1D1S1S2", "C1D1S1S2S3"}));
}

TEST_F(StopPath, AnErrorOnTheWayOutIsAskedAboutOnceUnderCancel) {
    stopAtSave(rig.files, 1);
    rig.watcher.answers = {false};
    scan("cancel", discWithPlainDirectories());
    EXPECT_EQ(rig.errorLog, missedDirectory(rig)) << "the level ends at its handler";
    EXPECT_EQ(rig.watcher.prompts, 1);
    EXPECT_EQ(numbers, (Texts{"C1D1", "C1D1S1"}));
}

TEST_F(StopPath, AnOkAtAPromptAsksOnceMoreWhenTheWayOutFails) {
    rig.directories.beforeUpdate = [saves = 0]() mutable {
        if (++saves == 3)
            throw base::RuntimeError(ErrorNumber::ReadFailure);
    };
    rig.watcher.answers = {true, true};
    scan("cancel", discWithPlainDirectories());
    EXPECT_EQ(rig.watcher.prompts, 2);
    EXPECT_EQ(rig.errorLog,
              "\r\n\r\nThe disc could not be read in Directory :- " + rig.root + "S1" + missedDirectory(rig));
}

TEST_F(StopPath, TheStepsAfterTheWalkAreLeftOut) {
    stopAtSave(rig.files, 1);
    scan("ignore");
    EXPECT_EQ(rig.watcher.log, (Texts{"started 4", "directory of 2", "stopped"}));
}

} // namespace discaro::test
