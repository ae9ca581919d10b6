#include "app/Module1.h"
#include "base/RuntimeError.h"
#include "scanner/ErrorHandling.h"
#include "scanner/core/ScanRig.h"

#include <gtest/gtest.h>

#include <ostream>

using namespace discaro;
using namespace discaro::test;
using scanner::ErrorDesk;
using scanner::ErrorHandler;

namespace {

scanner::ScanOptions action(const char* errorAction, const char* detail = "basic") {
    return {.DetailLevel = detail, .ErrorAction = errorAction, .LogErrors = "true", .UseFreeNumber = {}};
}

// ---- The five handlers: each with a conversion error and another one, under both error actions, with both answers

struct HandlerCase {
    const char* name;
    const ErrorHandler* handler;
    bool conversion;
    const char* errorAction;
    bool stop;
    int prompts;
    ErrorDesk::Next next;
};

void PrintTo(const HandlerCase& row, std::ostream* stream) {
    *stream << row.name << " under " << row.errorAction;
}

constexpr auto kOn = ErrorDesk::Next::Statement;
constexpr auto kAgain = ErrorDesk::Next::SameStatement;
constexpr auto kEnd = ErrorDesk::Next::EndOfProcedure;

std::vector<HandlerCase> handlerCases() {
    struct Procedure {
        const char* name;
        const ErrorHandler* handler;
        bool looks;
        ErrorDesk::Next after;
    };
    const Procedure procedures[] = {
        {"ScanFiles", &scanner::kScanFilesHandler, true, kAgain},
        {"CaptureFile", &scanner::kCaptureFileHandler, false, kEnd},
        {"CaptureFileMinimal", &scanner::kCaptureFileMinimalHandler, true, kEnd},
        {"ScanDirectory", &scanner::kScanDirectoryHandler, true, kEnd},
        {"CompleteDirectoryRow", &scanner::kCompleteDirectoryHandler, false, kEnd},
    };
    std::vector<HandlerCase> cases;
    for (const auto& procedure : procedures)
        for (const bool conversion : {true, false})
            for (const bool stop : {true, false}) {
                const int early = conversion && procedure.looks ? 1 : 0;
                cases.push_back({procedure.name, procedure.handler, conversion, "ignore", stop, early, kOn});
                cases.push_back(
                    {procedure.name, procedure.handler, conversion, "cancel", stop, early + 1, procedure.after});
            }
    return cases;
}

class Handlers : public testing::TestWithParam<HandlerCase> {
    const FreshProgram m_program;
};

} // namespace

TEST_P(Handlers, PromptLogAndGoOnAsTheHandlerSays) {
    const HandlerCase& row = GetParam();
    TestWatcher watcher;
    watcher.answers.assign(2, row.stop);
    const scanner::ScanOptions options = action(row.errorAction);
    ErrorDesk desk(options, watcher,
                   [](ErrorHandler::Place place) { return place == ErrorHandler::Place::File ? "A.TXT" : "D:\\DIR"; });
    const base::RuntimeError error(row.conversion ? base::ErrorNumber::DataTypeConversion
                                                  : base::ErrorNumber::ReadFailure);
    const bool stops = row.stop && row.prompts > 0;
    EXPECT_EQ(desk.handle(error, *row.handler), stops && row.next == kAgain ? kOn : row.next);
    EXPECT_EQ(watcher.prompts, row.prompts);
    EXPECT_EQ(app::Module1::ScanCancelled, row.stop && row.prompts > 0 ? 1 : 0);
    EXPECT_EQ(watcher.yields, row.stop ? row.prompts : 0) << "a yes lets pending events run";
    const bool file = row.handler->place == ErrorHandler::Place::File;
    EXPECT_EQ(desk.ErrorLog(),
              "\r\n\r\n" + error.description() + (file ? " in File :- A.TXT" : " in Directory :- D:\\DIR"));
}

INSTANTIATE_TEST_SUITE_P(All, Handlers, testing::ValuesIn(handlerCases()), [](const auto& param) {
    const HandlerCase& row = param.param;
    return std::string(row.name) + (row.conversion ? "_Conversion_" : "_Other_") + row.errorAction +
           (row.stop ? "_Ok" : "_Cancel");
});

TEST(ErrorPrompt, TellsHowTheCatalogueFailedOnlyWhenTheUserStopsTheScan) {
    for (const bool stop : {false, true})
        for (const auto number : {ErrorNumber::DiskFull, ErrorNumber::ReadFailure}) {
            const FreshProgram program;
            TestWatcher watcher;
            watcher.answers = {stop};
            const scanner::ScanOptions options = action("cancel");
            ErrorDesk desk(options, watcher, [](ErrorHandler::Place) { return "A.TXT"; });
            const base::RuntimeError error(number);
            desk.handle(error, scanner::kCaptureFileHandler);
            EXPECT_EQ(app::Module1::ScanCancelled, stop ? 1 : 0) << error.description();
            const bool told = stop && number == ErrorNumber::DiskFull;
            EXPECT_EQ(desk.reason(), told ? error.description() : "");
        }
}

// ---- Discs that fail under the walk

TEST(FailingDisc, UnderIgnoreTheFailedFieldStaysEmptyAndTheRestOfTheRowIsSaved) {
    ScanRig rig;
    rig.insert(folder("", {file("BAD.TXT").withFailure(ErrorNumber::ReadFailure), file("GOOD.TXT", "ok")}));
    rig.scan(action("ignore"));
    EXPECT_EQ(rig.column("files", "file name"), (std::vector<std::string>{"BAD.TXT", "GOOD.TXT"}));
    EXPECT_TRUE(rig.isNull("files", "[file name] = 'BAD.TXT'", "file size"));
    EXPECT_EQ(rig.field("files", "[file name] = 'BAD.TXT'", "file extension"), ".TXT");
    EXPECT_EQ(rig.watcher.prompts, 0);
    EXPECT_NE(rig.errorLog.find(" in File :- BAD.TXT"), std::string::npos);
    EXPECT_NE(rig.field("drive", {}, "Comments").find(" in File :- BAD.TXT"), std::string::npos);
}

TEST(FailingDisc, TheCommentsHoldTheReportTheUsersTextAndAnEntryForEachError) {
    const auto bad = [](const char* name) { return file(name, "lost").withFailure(ErrorNumber::ReadFailure); };
    ScanRig rig;
    rig.insert(folder("", {bad("BAD1.TXT"), file("GOOD.TXT", "ok"), folder("S", {bad("BAD2.TXT")})}));
    rig.scan(action("ignore"), "Disc", "from a magazine");
    // Length, stamp and attributes for the row, and the length once more for the directory's size.
    std::string entries;
    for (const char* name : {"BAD1.TXT", "BAD2.TXT"})
        for (int i = 0; i < 4; ++i)
            entries += std::string("\r\n\r\nThe disc could not be read in File :- ") + name;
    EXPECT_EQ(rig.field("drive", {}, "Comments"),
              "Scanned with basic details ignoring all errors.\r\nfrom a magazine\r\n" + entries);
}

TEST(FailingDisc, WithoutLoggingTheReportIsKeptNowhere) {
    ScanRig rig;
    rig.insert(folder("", {file("BAD.TXT").withFailure(ErrorNumber::ReadFailure)}));
    auto options = action("ignore");
    options.LogErrors = "false";
    rig.scan(options);
    EXPECT_EQ(rig.field("drive", {}, "Comments").find("BAD.TXT"), std::string::npos);
}

TEST(FailingDisc, UnderCancelAFileWhoseCaptureEndsHasNoRowWhenTheUserGoesOn) {
    ScanRig rig;
    auto& medium = rig.insert(folder("", {file("BAD.TXT", "b"), file("GOOD.TXT", "g")}));
    medium.failOn(Asked::Facts, 1);
    rig.scan(action("cancel"));
    EXPECT_EQ(rig.column("files", "file name"), std::vector<std::string>{"GOOD.TXT"});
    EXPECT_EQ(rig.watcher.prompts, 1);
    EXPECT_EQ(rig.field("directories", {}, "Size"), "0.001953125") << "the walk itself had the length later";
}

TEST(FailingDisc, UnderCancelOkOnTheVeryFirstFileLeavesTheCatalogueAsItWas) {
    ScanRig rig;
    auto& medium = rig.insert(folder("", {file("BAD.TXT", "b"), folder("S", {file("X")})}));
    medium.failOn(Asked::Facts, 1);
    rig.watcher.answers = {true};
    rig.scan(action("cancel"));
    EXPECT_EQ(rig.watcher.log.back(), "stopped");
    EXPECT_EQ(rig.count("drive"), 0);
    EXPECT_EQ(rig.count("directories"), 0);
    EXPECT_EQ(rig.count("files"), 0);
    EXPECT_EQ(rig.master("scanned cd-roms"), "0");
    EXPECT_EQ(rig.master("scan error"), "no error");
}

TEST(FailingDisc, ADamagedDirectoryIsLoggedAndTheRestIsScanned) {
    ScanRig rig;
    rig.insert(folder("", {folder("BROKEN", {file("SEEN")}).withDamage("record 3 runs over the end"),
                           folder("WHOLE", {file("FINE")})}));
    rig.scan(action("ignore"));
    EXPECT_EQ(rig.column("files", "file name"), (std::vector<std::string>{"SEEN", "FINE"}));
    EXPECT_EQ(rig.errorLog,
              "\r\n\r\nThe directory is damaged: record 3 runs over the end in Directory :- " + rig.root + "BROKEN");
}

TEST(FailingDisc, ADirectoryThatCannotBeListedIsEmptyAndLogged) {
    ScanRig rig;
    rig.insert(folder("", {folder("DEAD", {file("LOST")}).withFailure(ErrorNumber::ReadFailure), file("F")}));
    rig.scan(action("ignore"));
    EXPECT_EQ(rig.column("directories", "directory name"), (std::vector<std::string>{rig.root, "DEAD"}));
    EXPECT_EQ(rig.column("files", "file name"), std::vector<std::string>{"F"});
    EXPECT_FALSE(rig.errorLog.empty());
}

TEST(FailingDisc, ADirectoryInsideItselfEndsAndIsLogged) {
    ScanRig rig;
    rig.insert(folder("", {folder("LOOP", {folder("AGAIN").standingFor("\\LOOP")})}));
    rig.scan(action("ignore"));
    EXPECT_EQ(rig.column("directories", "directory name"), (std::vector<std::string>{rig.root, "LOOP", "AGAIN"}));
    EXPECT_FALSE(rig.errorLog.empty());
}

TEST(FailingDisc, AnUnreadableExecutableKeepsItsRowAtFullDetail) {
    ScanRig rig;
    rig.insert(folder("", {file("P.EXE", "MZ and more").withReadFailure(ErrorNumber::ReadFailure)}));
    rig.scan(action("ignore", "all"));
    EXPECT_EQ(rig.column("files", "file name"), std::vector<std::string>{"P.EXE"});
}

TEST(FailingDisc, ABarThatRefusesAValueIsAnErrorOfTheFile) {
    ScanRig rig;
    rig.insert(folder("", {file("A.TXT")}));
    rig.watcher.atDiscBar = [] { throw base::RuntimeError(base::ErrorNumber::InvalidValue); };
    rig.scan(action("ignore"));
    EXPECT_EQ(rig.count("files"), 1);
    EXPECT_EQ(rig.errorLog, "\r\n\r\nThe value is out of range in File :- A.TXT");
    EXPECT_EQ(rig.watcher.bars, (std::vector<std::string>{"disc tip", "directory", "directory tip"}))
        << "the other statements of the display run all the same";
}

TEST(FailingDisc, ABarAndItsTipThatBothRefuseAreTwoErrors) {
    ScanRig rig;
    rig.insert(folder("", {file("A.TXT")}));
    const auto refuse = [] { throw base::RuntimeError(base::ErrorNumber::InvalidValue); };
    rig.watcher.atDiscBar = refuse;
    rig.watcher.atDiscBarTip = refuse;
    rig.scan(action("ignore"));
    const std::string entry = "\r\n\r\nThe value is out of range in File :- A.TXT";
    EXPECT_EQ(rig.errorLog, entry + entry);
    EXPECT_EQ(rig.watcher.bars, (std::vector<std::string>{"directory", "directory tip"}));
}

TEST(FailingDisc, UnderCancelAnExecutableThatNeverOpensIsAskedAboutOnceAndHasNoRow) {
    ScanRig rig;
    rig.insert(folder("", {file("P.EXE", "MZ").withOpenFailure(ErrorNumber::ReadFailure), file("Q")}));
    rig.scan(action("cancel", "all"));
    EXPECT_EQ(rig.watcher.prompts, 1);
    EXPECT_EQ(rig.errorLog, "\r\n\r\nThe disc could not be read in File :- P.EXE");
    EXPECT_EQ(rig.watcher.log.back(), "finished");
    EXPECT_EQ(rig.column("files", "file name"), std::vector<std::string>{"Q"});
}

TEST(FailingDisc, UnderCancelAnExecutableThatNeverOpensEndsTheScanWithTheUsersOk) {
    ScanRig rig;
    rig.insert(folder("", {file("P.EXE", "MZ").withOpenFailure(ErrorNumber::ReadFailure), file("Q")}));
    rig.watcher.answers = {true};
    rig.scan(action("cancel", "all"));
    EXPECT_EQ(rig.watcher.prompts, 1);
    EXPECT_EQ(rig.watcher.log.back(), "stopped");
    EXPECT_EQ(rig.count("files"), 0);
}

TEST(FailingDisc, TheLogHasABound) {
    std::vector<MemoryNode> files;
    for (int i = 0; i < 40000; ++i)
        files.push_back(file(std::string(200, 'n') + std::to_string(i)).withFailure(ErrorNumber::ReadFailure));
    ScanRig rig;
    rig.insert(folder("", files));
    rig.scan(action("ignore"));
    EXPECT_LT(rig.errorLog.size(), scanner::ErrorDesk::kLongestLog + 100);
    EXPECT_TRUE(rig.errorLog.ends_with(" more errors"));
    EXPECT_TRUE(rig.field("drive", {}, "Comments").ends_with(" more errors"));
}

TEST(FailingDisc, TheWalkReadsTheRootAnewAfterTheQuickScan) {
    ScanRig rig;
    auto& medium = rig.insert(folder("", {folder("S")}));
    rig.scan();
    EXPECT_EQ(medium.listed(), (std::vector<std::string>{"\\", "\\S", "\\", "\\S"}))
        << "quick scan, walk; the look for autorun.inf needs no listing of its own";
}

// ---- A catalogue that refuses

TEST(RefusingCatalogue, ADiscTableThatTakesNoRowEndsTheScan) {
    ScanRig rig;
    rig.insert(folder("", {file("A")}));
    rig.discs.SetReadOnly(true);
    rig.discs.Refresh();
    rig.scan();
    EXPECT_EQ(rig.watcher.log.back(), "stopped");
    EXPECT_EQ(rig.watcher.log[rig.watcher.log.size() - 2],
              "not saved: The operation is not supported for this object: the recordset is a snapshot");
    EXPECT_EQ(rig.count("directories"), 0);
}

TEST(RefusingCatalogue, TheLogGoesIntoNoOtherDiscsComments) {
    ScanRig rig;
    rig.insert(folder("", {file("A")}));
    rig.scan(action("ignore"), "First");
    const std::string before = rig.field("drive", "[id number] = 1", "Comments");
    rig.insert(folder("", {file("B").withFailure(ErrorNumber::ReadFailure)}));
    rig.watcher.atYield = [&](int) {
        rig.discs.Recordset().FindFirst("[id number] = 2");
        if (!rig.discs.Recordset().NoMatch())
            rig.discs.Recordset().Delete();
    };
    rig.scan(action("ignore"), "Second");
    EXPECT_EQ(rig.field("drive", {}, "Comments"), before);
}

TEST(RefusingCatalogue, OneThatIsMovedAwayIsToldAndStaysAsItWas) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), folder("S", {file("B"), file("C")})}));
    const auto path = app::Module1::cataloguePath();
    const auto away = path.parent_path() / "away.mde";
    rig.watcher.atYield = [&](int number) {
        if (number == 5)
            std::filesystem::rename(path, away);
    };
    rig.scan();
    EXPECT_EQ(rig.watcher.log.back(), "stopped");
    EXPECT_NE(rig.watcher.log[rig.watcher.log.size() - 2].find("The catalogue file was replaced, "
                                                               "removed or changed"),
              std::string::npos);
    rig.close();
    app::Module1::CatalogueDb.reset();
    std::filesystem::rename(away, path);
    rig.open();
    EXPECT_EQ(rig.count("drive") + rig.count("directories") + rig.count("files"), 0);
}

// ---- Stops

TEST(Stop, AtAnyYieldOfTheWalkNothingIsLeft) {
    for (int at = 1; at <= 25; ++at) {
        ScanRig rig;
        rig.insert(folder("", {file("A"), folder("S", {file("B"), folder("T", {file("C")})}), folder("U")}));
        rig.watcher.atYield = [&](int number) {
            if (number == at)
                app::Module1::ScanCancelled = 1;
        };
        rig.scan(action("ignore"));
        if (rig.watcher.log.back() == "finished")
            continue;
        EXPECT_EQ(rig.watcher.log.back(), "stopped") << "yield " << at;
        EXPECT_EQ(rig.count("drive") + rig.count("directories") + rig.count("files"), 0) << "yield " << at;
        EXPECT_EQ(rig.master("scanned cd-roms"), "0") << "yield " << at;
        EXPECT_EQ(rig.master("scan error"), "no error") << "yield " << at;
    }
}

TEST(Stop, LeavesTheDiscsScannedBefore) {
    ScanRig rig;
    rig.insert(folder("", {file("A")}));
    rig.scan();
    rig.watcher.atYield = [](int) { app::Module1::ScanCancelled = 1; };
    rig.scan();
    EXPECT_EQ(rig.count("drive"), 1);
    EXPECT_EQ(rig.count("files"), 1);
    EXPECT_EQ(rig.master("real cd-roms scanned"), "1");
}

TEST(Stop, TheNextScanAfterAStopWorks) {
    ScanRig rig;
    rig.insert(folder("", {file("A")}));
    rig.watcher.atYield = [](int) { app::Module1::ScanCancelled = 1; };
    rig.scan();
    rig.watcher.atYield = nullptr;
    app::Module1::ScanCancelled = 0;
    rig.open();
    rig.scan();
    EXPECT_EQ(rig.column("drive", "id number"), std::vector<std::string>{"1"});
}
