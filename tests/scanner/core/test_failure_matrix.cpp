#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "scanner/core/ScanRig.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

// Each procedure of the walk that handles its errors, with a statement of it failing on a real disc or a real row:
// with a conversion error and another one, under both error actions, with both answers.
namespace discaro::test {
namespace {

using base::RuntimeError;
using testing::Contains;
using testing::ElementsAreArray;

using Texts = std::vector<std::string>;

// A.TXT and B.TXT in the root, C.TXT in S1, D.TXT in S2; B.TXT and S1 are the ones that fail.
MemoryNode disc() {
    return folder("", {file("A.TXT", "aa"), file("B.TXT", "bbb"), folder("S1", {file("C.TXT", "cccc")}),
                       folder("S2", {file("D.TXT", "d")})});
}

const Texts kAllFiles = {"A.TXT", "B.TXT", "C.TXT", "D.TXT"};
const Texts kWithoutB = {"A.TXT", "C.TXT", "D.TXT"};
const Texts kAllDirectories = {"C1D1", "C1D1S1", "C1D1S2"};
constexpr auto kSizeOfA = "0.001953125";
constexpr auto kSizeOfBoth = "0.0048828125";

// The save of this number of a data source fails, once.
void failAtSave(db::DataSource& source, int save, ErrorNumber number) {
    source.beforeUpdate = [save, number, saves = 0]() mutable {
        if (++saves == save)
            throw RuntimeError(number);
    };
}

// What the catalogue holds of a disc whose scan was not stopped.
struct Rows {
    Texts files;
    Texts directories;
    std::string rootSize;
};

enum class WayOut { FromRoot, StaysBelow, Sound };

struct Failure {
    const char* procedure;
    const char* detailLevel;
    std::function<void(ScanRig& rig, MemoryMedium& medium, ErrorNumber number)> inject;
    std::string place; // what the log says; "*" stands for the root's path
    bool looks;        // whether the procedure looks for conversion errors
    WayOut wayOut;
    Rows ignored, skipped; // after the statement alone was left out; after the procedure ended
};

std::vector<Failure> failures() {
    const std::string file = " in File :- B.TXT";
    const std::string directory = " in Directory :- *S1";
    const Rows whole{kAllFiles, kAllDirectories, kSizeOfBoth};
    const Rows withoutB{kWithoutB, kAllDirectories, kSizeOfBoth};
    const auto facts = [](ScanRig&, MemoryMedium& medium, ErrorNumber number) {
        medium.failOn(Asked::Facts, 2, number);
    };
    const auto fileSave = [](ScanRig& rig, MemoryMedium&, ErrorNumber number) { failAtSave(rig.files, 2, number); };
    // The root's row is saved twice, then that of S1.
    const auto directorySave = [](int save) {
        return [save](ScanRig& rig, MemoryMedium&, ErrorNumber number) { failAtSave(rig.directories, save, number); };
    };
    return {
        {"ScanFiles", "minimal", facts, file, true, WayOut::FromRoot, {kAllFiles, kAllDirectories, kSizeOfA}, whole},
        {"CaptureFile", "basic", facts, file, false, WayOut::FromRoot, whole, withoutB},
        {"CaptureFileSave", "basic", fileSave, file, false, WayOut::FromRoot, withoutB, withoutB},
        {"CaptureFileMinimal", "minimal", fileSave, file, true, WayOut::FromRoot, withoutB, withoutB},
        {"ScanDirectory",
         "basic",
         directorySave(3),
         directory,
         true,
         WayOut::StaysBelow,
         {{"A.TXT", "B.TXT", "D.TXT"}, {"C1D1", "C1D1S2"}, kSizeOfBoth},
         {{"A.TXT", "B.TXT"}, {"C1D1"}, kSizeOfBoth}},
        {"CompleteDirectoryRow", "basic", directorySave(4), directory, false, WayOut::Sound, whole, whole},
    };
}

struct Case {
    Failure failure;
    ErrorNumber number;
    std::string errorAction;
    bool stop; // the answer to every prompt

    bool cancels() const { return errorAction == "cancel"; }
    // Prompts for the failing statement itself.
    int prompts() const {
        const bool early = failure.looks && number == ErrorNumber::DataTypeConversion;
        return (early ? 1 : 0) + (cancels() ? 1 : 0);
    }
    bool stopped() const { return stop && prompts() > 0; }
    // The walk then looks for S2 in S1: because the procedure's end leaves it there, or because a stop in the root
    // passes through S1 without going up again.
    bool losesPlace() const {
        return failure.wayOut == WayOut::StaysBelow ? cancels() : stopped() && failure.wayOut == WayOut::FromRoot;
    }
};

void PrintTo(const Case& row, std::ostream* stream) {
    *stream << row.failure.procedure << " under " << row.errorAction;
}

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const Failure& failure : failures())
        for (const auto number : {ErrorNumber::DataTypeConversion, ErrorNumber::ReadFailure})
            for (const char* errorAction : {"ignore", "cancel"})
                for (const bool stop : {true, false})
                    all.push_back({failure, number, errorAction, stop});
    return all;
}

class FailureMatrix : public testing::TestWithParam<Case> {
protected:
    void SetUp() override {
        MemoryMedium& medium = rig.insert(disc());
        const Case& row = GetParam();
        row.failure.inject(rig, medium, row.number);
        rig.watcher.answers.assign(10, row.stop);
        rig.scan({.DetailLevel = row.failure.detailLevel,
                  .ErrorAction = row.errorAction,
                  .LogErrors = "true",
                  .UseFreeNumber = {}});
    }

    std::string entry(const std::string& description, std::string place) const {
        if (const auto star = place.find('*'); star != std::string::npos)
            place.replace(star, 1, rig.root);
        return "\r\n\r\n" + description + place;
    }

    ScanRig rig;
};

} // namespace

TEST_P(FailureMatrix, PromptsAndLogsAsTheProcedureDoes) {
    const Case& row = GetParam();
    EXPECT_EQ(rig.watcher.prompts, row.prompts() + (row.losesPlace() && row.cancels() ? 1 : 0));
    std::string log = entry(RuntimeError(row.number).description(), row.failure.place);
    if (row.losesPlace())
        log += entry("The value is out of range", " in Directory :- *S1");
    EXPECT_EQ(rig.errorLog, log);
}

TEST_P(FailureMatrix, LeavesTheRowsThatTheAnswerMeans) {
    const Case& row = GetParam();
    if (row.stopped()) {
        EXPECT_EQ(rig.watcher.log.back(), "stopped");
        EXPECT_EQ(rig.count("drive") + rig.count("directories") + rig.count("files"), 0);
        EXPECT_EQ(rig.master("scanned cd-roms") + rig.master("scan error"), "0no error");
        return;
    }
    EXPECT_THAT(rig.watcher.log, Contains("finished"));
    const Rows& rows = row.cancels() ? row.failure.skipped : row.failure.ignored;
    EXPECT_THAT(rig.column("files", "file name"), ElementsAreArray(rows.files));
    EXPECT_THAT(rig.column("directories", "id number"), ElementsAreArray(rows.directories));
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Size"), rows.rootSize);
    EXPECT_EQ(rig.field("drive", {}, "Comments"),
              "Scanned with " + std::string(row.failure.detailLevel) + " details " +
                  (row.cancels() ? "not ignoring any errors." : "ignoring all errors.") + "\r\n" + rig.errorLog);
}

INSTANTIATE_TEST_SUITE_P(All, FailureMatrix, testing::ValuesIn(cases()), [](const auto& param) {
    const Case& row = param.param;
    return std::string(row.failure.procedure) +
           (row.number == ErrorNumber::DataTypeConversion ? "_Conversion_" : "_Other_") + row.errorAction +
           (row.stop ? "_Ok" : "_Cancel");
});

// ---- What the matrix leaves out

namespace {

scanner::ScanOptions cancelling(const char* detailLevel = "basic") {
    return {.DetailLevel = detailLevel, .ErrorAction = "cancel", .LogErrors = "true", .UseFreeNumber = {}};
}

std::string repeated(const std::string& entry, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += entry;
    return all;
}

constexpr auto kUnread = "\r\n\r\nThe disc could not be read in File :- A.TXT";

} // namespace

TEST(FailingStatement, UnderIgnoreLeavesItsFieldNullAndTheOtherFieldsSaved) {
    ScanRig rig;
    rig.insert(disc()).failOn(Asked::Facts, 2);
    rig.scan();
    EXPECT_TRUE(rig.isNull("files", "[file name] = 'B.TXT'", "file size"));
    EXPECT_EQ(rig.field("files", "[file name] = 'B.TXT'", "Attributes"), "R");
    EXPECT_FALSE(rig.isNull("files", "[file name] = 'B.TXT'", "file time"));
}

TEST(FailingStatement, OfACompletedDirectoryLeavesTheTwoFieldsThatItBeganWith) {
    ScanRig rig;
    rig.insert(disc());
    failAtSave(rig.directories, 4, ErrorNumber::ReadFailure);
    rig.scan(cancelling());
    const std::string row = "[id number] = 'C1D1S1'";
    EXPECT_EQ(rig.field("directories", row, "drive id number"), "1");
    for (const char* name : {"Parent id", "Directory Path", "directory name", "Size"})
        EXPECT_TRUE(rig.isNull("directories", row, name)) << name;
}

TEST(FailingStatement, OfTheWalkRunsAgainUntilItSucceeds) {
    ScanRig rig;
    rig.insert(folder("", {file("A.TXT", "aa")})).failOn(Asked::Facts, 1, ErrorNumber::ReadFailure, 5);
    rig.scan(cancelling("minimal"));
    EXPECT_EQ(rig.watcher.prompts, 5);
    EXPECT_EQ(rig.errorLog, repeated(kUnread, 5));
    EXPECT_EQ(rig.watcher.log.back(), "finished");
    EXPECT_EQ(rig.field("directories", {}, "Size"), kSizeOfA);
}

TEST(FailingStatement, OfTheWalkThatNeverSucceedsEndsWithTheUsersOk) {
    ScanRig rig;
    rig.insert(folder("", {file("A.TXT", "aa").withFailure(ErrorNumber::ReadFailure), file("B")}));
    rig.watcher.answers.assign(6, false);
    rig.watcher.answers.push_back(true);
    rig.scan(cancelling("minimal"));
    EXPECT_EQ(rig.watcher.prompts, 7);
    EXPECT_EQ(rig.errorLog, repeated(kUnread, 7));
    EXPECT_EQ(rig.watcher.log.back(), "stopped");
    EXPECT_EQ(rig.count("files"), 0);
}

// ---- Damaged directories

namespace {

struct Damage {
    const char* name;
    MemoryNode directory;
    std::string description;
    Texts files; // that can be seen in spite of it, then the one behind
};

void PrintTo(const Damage& damage, std::ostream* stream) {
    *stream << damage.description;
}

class DamagedDirectory : public testing::TestWithParam<Damage> {
protected:
    void scan(bool stop) {
        rig.insert(folder("", {GetParam().directory, folder("WHOLE", {file("FINE")})}));
        rig.watcher.answers.assign(10, stop);
        rig.scan(cancelling());
        EXPECT_EQ(rig.errorLog, "\r\n\r\n" + GetParam().description + " in Directory :- " + rig.root + "BROKEN");
        EXPECT_EQ(rig.watcher.prompts, 1);
    }

    ScanRig rig;
};

} // namespace

TEST_P(DamagedDirectory, IsAskedAboutOnceAndScannedAsFarAsItGoes) {
    scan(false);
    EXPECT_EQ(rig.watcher.log.back(), "finished");
    EXPECT_EQ(rig.column("directories", "directory name"), (Texts{rig.root, "BROKEN", "WHOLE"}));
    EXPECT_EQ(rig.column("files", "file name"), GetParam().files);
}

TEST_P(DamagedDirectory, EndsTheScanWithTheUsersOk) {
    scan(true);
    EXPECT_EQ(rig.watcher.log.back(), "stopped");
    EXPECT_EQ(rig.count("drive") + rig.count("directories") + rig.count("files"), 0);
}

INSTANTIATE_TEST_SUITE_P(All, DamagedDirectory,
                         testing::Values(Damage{"InPart",
                                                folder("BROKEN", {file("SEEN")}).withDamage("cut short"),
                                                "The directory is damaged: cut short",
                                                {"SEEN", "FINE"}},
                                         Damage{"AsAWhole",
                                                folder("BROKEN", {file("LOST")}).withFailure(ErrorNumber::ReadFailure),
                                                "The disc could not be read",
                                                {"FINE"}}),
                         [](const auto& param) { return std::string(param.param.name); });

} // namespace discaro::test
