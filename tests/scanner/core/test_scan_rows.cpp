#include "base/Stamp.h"
#include "scanner/core/ScanRig.h"

#include <gtest/gtest.h>

using namespace discaro;
using namespace discaro::test;

namespace {

constexpr std::time_t kNoon = 1040814000; // some time of day in every zone but those where it is midnight

scanner::ScanOptions detail(const char* level) {
    return {.DetailLevel = level, .ErrorAction = "ignore", .LogErrors = "true", .UseFreeNumber = {}};
}

MemoryNode sampleDisc() {
    return folder("", {file("ZLAST.TXT", "12345").withTime(kNoon + 15),
                       folder("beta", {file("B1.DAT", std::string(2048, 'b'))}),
                       folder("Alpha", {folder("Deep", {file("D")}), file("A1")}), file("AFIRST")});
}

} // namespace

TEST(ScanRows, DirectoriesAreNumberedByTheirPlaceInTheSortedListing) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    EXPECT_EQ(rig.column("directories", "id number"),
              (std::vector<std::string>{"C1D1", "C1D1S1", "C1D1S1S1", "C1D1S2"}));
    EXPECT_EQ(rig.column("directories", "directory name"),
              (std::vector<std::string>{rig.root, "Alpha", "Deep", "beta"}));
}

TEST(ScanRows, AParentsNumberIsTheOwnWithoutItsLastPlaceAndARootHasR) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    EXPECT_EQ(rig.column("directories", "Parent id"), (std::vector<std::string>{"R", "C1D1", "C1D1S1", "C1D1"}));
}

TEST(ScanRows, ADirectoryRowTellsPathCountsAndSize) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    const auto of = [&](std::string_view name) { return rig.field("directories", "[id number] = 'C1D1'", name); };
    EXPECT_EQ(of("drive id number"), "1");
    EXPECT_EQ(of("Directory Path"), rig.root);
    EXPECT_EQ(of("number of files"), "2");
    EXPECT_EQ(of("number of subdirectories"), "2");
    EXPECT_EQ(of("Size"), "0.0048828125") << "five bytes in kilobytes";
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1S1S1'", "Directory Path"), rig.root + "Alpha\\Deep");
}

TEST(ScanRows, FilesStandInTheMediumsOrderEachBehindItsDirectory) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    EXPECT_EQ(rig.column("files", "file name"), (std::vector<std::string>{"ZLAST.TXT", "AFIRST", "A1", "D", "B1.DAT"}));
    EXPECT_EQ(rig.column("files", "directory number"),
              (std::vector<std::string>{"C1D1", "C1D1", "C1D1S1", "C1D1S1S1", "C1D1S2"}));
}

TEST(ScanRows, TheDiscRowTellsTheDrivesFactsAndTheReport) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan({}, "My disc", "seen in a box");
    const auto of = [&](std::string_view name) { return rig.field("drive", "[id number] = 1", name); };
    EXPECT_EQ(of("Drive letter"), rig.root);
    EXPECT_EQ(of("volume name"), "MEMORY");
    EXPECT_EQ(of("Serial Number"), "0123-4567");
    EXPECT_EQ(of("file system"), "CDFS");
    EXPECT_EQ(of("Total Size"), "650");
    EXPECT_EQ(of("free size"), "0");
    EXPECT_EQ(of("prefered name"), "My disc");
    EXPECT_EQ(of("Comments"), "Scanned with basic details ignoring all errors.\r\nseen in a box\r\n")
        << "an error-free scan leaves one empty line";
    EXPECT_TRUE(rig.isNull("drive", "[id number] = 1", "Autorun"));
}

TEST(ScanRows, WithoutLoggingTheCommentsHaveNoEmptyLine) {
    ScanRig rig;
    rig.insert(folder(""));
    rig.scan({.DetailLevel = "basic", .ErrorAction = "ignore", .LogErrors = "false", .UseFreeNumber = {}});
    EXPECT_EQ(rig.field("drive", {}, "Comments"), "Scanned with basic details ignoring all errors.");
}

TEST(ScanRows, ADiscWithoutALabelHasAnEmptyVolumeName) {
    ScanRig rig;
    rig.insert(folder("")).volume.label.clear();
    rig.scan();
    EXPECT_EQ(rig.field("drive", {}, "volume name"), "");
}

TEST(ScanRows, AnEmptyDiscHasOneDirectoryWithoutFilesOrSize) {
    ScanRig rig;
    rig.insert(folder(""));
    rig.scan();
    EXPECT_EQ(rig.count("directories"), 1);
    EXPECT_EQ(rig.count("files"), 0);
    EXPECT_EQ(rig.field("directories", {}, "number of files"), "0");
    EXPECT_EQ(rig.field("directories", {}, "Size"), "0");
    EXPECT_EQ(rig.field("directories", {}, "Total number of Subdirectories"), "0");
    for (const std::string& line : rig.watcher.log)
        EXPECT_FALSE(line.starts_with("directory of")) << "the directory's bar keeps its size";
}

TEST(ScanRows, AnEmptySubdirectoryHasARowLikeAnyOther) {
    ScanRig rig;
    rig.insert(folder("", {folder("EMPTY")}));
    rig.scan();
    EXPECT_EQ(rig.column("directories", "directory name"), (std::vector<std::string>{rig.root, "EMPTY"}));
}

TEST(ScanRows, BasicDetailWritesSizeAttributesAndStamp) {
    ScanRig rig;
    rig.insert(folder("", {file("A.TXT", "12345").withTime(kNoon + 15).withAttributes(1 | 2 | 32)}));
    rig.scan();
    const std::string stamp = base::stampText(kNoon + 15);
    EXPECT_EQ(rig.field("files", {}, "file extension"), ".TXT");
    EXPECT_EQ(rig.field("files", {}, "file size"), "0.0048828125");
    EXPECT_EQ(rig.field("files", {}, "Attributes"), "AHR");
    EXPECT_EQ(rig.field("files", {}, "File date"), stamp.substr(0, 8));
    EXPECT_EQ(rig.field("files", {}, "file time"), stamp.substr(9));
    for (const char* name : {"Company Name", "Description", "Copyright", "Product name", "Product Version",
                             "Internal Name", "Original file Name", "number of icons", "Comments"})
        EXPECT_TRUE(rig.isNull("files", {}, name)) << name;
}

TEST(ScanRows, MinimalDetailWritesNamesAloneAndOpensNothing) {
    ScanRig rig;
    auto& medium = rig.insert(folder("", {file("A.TXT", "12345")}));
    rig.scan(detail("minimal"));
    EXPECT_EQ(rig.field("files", {}, "file name"), "A.TXT");
    EXPECT_EQ(rig.field("files", {}, "file extension"), ".TXT");
    for (const char* name : {"file size", "Attributes", "File date", "file time", "number of icons"})
        EXPECT_TRUE(rig.isNull("files", {}, name)) << name;
    EXPECT_EQ(rig.field("directories", {}, "Size"), "0.0048828125") << "the directory's size counts all the same";
    EXPECT_TRUE(rig.isNull("Master Table", {}, "Total Size"));
    EXPECT_EQ(medium.calls(Asked::Open), 0);
}

TEST(ScanRows, FullDetailOfAPlainFileHasEmptyTextsAndNoIcons) {
    ScanRig rig;
    rig.insert(folder("", {file("A.TXT", "12345")}));
    rig.scan(detail("all"));
    EXPECT_FALSE(rig.isNull("files", {}, "Company Name"));
    EXPECT_EQ(rig.field("files", {}, "Company Name"), "");
    EXPECT_EQ(rig.field("files", {}, "number of icons"), "0");
}

TEST(ScanRows, AStampAtExactlyMidnightLeavesDateAndTimeEmpty) {
    std::tm midnight{};
    midnight.tm_year = 101;
    midnight.tm_mday = 5;
    midnight.tm_isdst = -1;
    ScanRig rig;
    rig.insert(folder("", {file("A").withTime(std::mktime(&midnight))}));
    rig.scan();
    EXPECT_TRUE(rig.isNull("files", {}, "File date"));
    EXPECT_TRUE(rig.isNull("files", {}, "file time"));
}

TEST(ScanRows, AFileWithoutAPointUnderADirectoryWithOneTakesTheTailOfThePath) {
    ScanRig rig;
    rig.insert(folder("", {folder("A.B", {file("README")})}));
    rig.scan();
    EXPECT_EQ(rig.field("files", {}, "file extension"), ".B\\README");
}

TEST(ScanRows, AFileWithoutAnExtensionLeavesTheFieldUnset) {
    ScanRig rig;
    rig.insert(folder("", {file("README"), file("DOT.")}));
    rig.scan();
    EXPECT_TRUE(rig.isNull("files", "[file name] = 'README'", "file extension"));
    EXPECT_TRUE(rig.isNull("files", "[file name] = 'DOT.'", "file extension"));
}

// ---- autorun.inf and setup.ini

TEST(Autorun, EveryLineIsKeptWithALineEndBeforeIt) {
    ScanRig rig;
    rig.insert(folder("", {file("AUTORUN.INF", "[autorun]\r\nopen=setup.exe\r\n\r\n[other]\nx=1")}));
    rig.scan(detail("minimal"));
    EXPECT_EQ(rig.field("drive", {}, "Autorun"), "\r\n[autorun]\r\nopen=setup.exe\r\n\r\n[other]\r\nx=1");
}

TEST(Autorun, AFileThatCannotBeReadLeavesTheFieldNullAndTheScanGoesOn) {
    ScanRig rig;
    rig.insert(folder("", {file("autorun.inf", "x").withOpenFailure(ErrorNumber::ReadFailure)}));
    rig.scan();
    EXPECT_TRUE(rig.isNull("drive", {}, "Autorun"));
    EXPECT_EQ(rig.count("files"), 1);
    EXPECT_EQ(rig.errorLog, "");
}

TEST(SetupIni, TheLastFilesApplicationNameGoesIntoTheDirectorysComments) {
    ScanRig rig;
    rig.insert(folder("", {folder("P", {file("A.TXT"), file("SETUP.INI", "[startup]\nAppName=  Great Program \n")})}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1S1'", "Comments"), "Great Program");
}

TEST(SetupIni, OpensInTheRootInSpiteOfTheDoubledBackslash) {
    ScanRig rig;
    rig.insert(folder("", {file("setup.ini", "[Startup]\r\nAppName=Rooted")}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("directories", {}, "Comments"), "Rooted");
}

TEST(SetupIni, AFileBehindItClearsTheName) {
    ScanRig rig;
    rig.insert(folder("", {file("setup.ini", "[Startup]\nAppName=Gone"), file("Z.TXT")}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("directories", {}, "Comments"), "");
}

TEST(SetupIni, ADirectoryWithoutFilesInheritsTheNameOfThePreviousOne) {
    ScanRig rig;
    rig.insert(folder("", {folder("A", {file("setup.ini", "[Startup]\nAppName=Passed on")}), folder("B")}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("directories", "[directory name] = 'B'", "Comments"), "Passed on");
}

TEST(SetupIni, IsLookedAtInFullDetailOnly) {
    ScanRig rig;
    rig.insert(folder("", {file("setup.ini", "[Startup]\nAppName=Unseen")}));
    rig.scan(detail("basic"));
    EXPECT_EQ(rig.field("directories", {}, "Comments"), "");
}

TEST(SetupIni, ALongNameIsCutToWhatFitsTheBuffer) {
    ScanRig rig;
    rig.insert(folder("", {file("setup.ini", "[Startup]\nAppName=" + std::string(80, 'n'))}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("directories", {}, "Comments"), std::string(49, 'n'));
}

TEST(SetupIni, WithoutTheKeyTheNameIsEmpty) {
    ScanRig rig;
    rig.insert(folder("", {file("setup.ini", "[Other]\nAppName=No")}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("directories", {}, "Comments"), "");
}

// ---- The course of a scan

TEST(ScanCourse, TheDisplayHearsOfEachStepInOrder) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), file("B"), folder("S", {file("C")})}));
    rig.scan();
    EXPECT_EQ(rig.watcher.log,
              (std::vector<std::string>{"started 3", "directory of 2", "directory of 1", "walk finished",
                                        "remaining time zero", "cancel impossible", "totals started", "totals finished",
                                        "clock stopped", "beep", "finished"}));
    EXPECT_EQ(rig.watcher.counters, (std::vector<double>{1, 2, 2, 1, 3, 0}));
    EXPECT_EQ(rig.watcher.totalsBarSize, 2);
    EXPECT_EQ(rig.watcher.totalsSteps, 2);
}

TEST(ScanCourse, TheTotalsOfALaterDiscAreAsManyStepsAsItHasDirectories) {
    ScanRig rig;
    rig.insert(folder("", {folder("A"), folder("B"), folder("C")}));
    rig.scan();
    EXPECT_EQ(rig.watcher.totalsBarSize, 4);
    rig.watcher.totalsSteps = 0;
    rig.insert(folder("", {folder("ONE")}));
    rig.scan();
    EXPECT_EQ(rig.watcher.totalsBarSize, 2);
    EXPECT_EQ(rig.watcher.totalsSteps, 2);
}

TEST(ScanCourse, EventsRunBetweenTheBeginningOfTheTotalsAndTheFirstStep) {
    ScanRig rig;
    rig.insert(folder("", {folder("A")}));
    bool ran = false;
    rig.watcher.atYield = [&](int) {
        const auto& log = rig.watcher.log;
        ran |= !log.empty() && log.back() == "totals started" && rig.watcher.totalsSteps == 0;
    };
    rig.scan();
    EXPECT_TRUE(ran);
}

TEST(ScanCourse, MoreFilesThanCountedMakeTheFilesLeftNegative) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), file("B")}));
    rig.quickFiles = 1;
    rig.scan();
    EXPECT_EQ(rig.watcher.counters, (std::vector<double>{1, 0, 2, -1}));
}

TEST(ScanCourse, TheMasterRowCountsTheWholeCatalogueAndSaysNoError) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    rig.insert(folder("", {file("ONE", std::string(1024, 'x'))}));
    rig.scan();
    EXPECT_EQ(rig.master("scanned cd-roms"), "2");
    EXPECT_EQ(rig.master("real cd-roms scanned"), "2");
    EXPECT_EQ(rig.master("Total number of directories"), "5");
    EXPECT_EQ(rig.master("Total number of files"), "6");
    EXPECT_EQ(rig.master("Total Size"), "3.0048828125");
    EXPECT_EQ(rig.master("scan error"), "no error");
}

TEST(ScanCourse, TheSameDiscTwiceHasTheSamePlacesUnderTwoNumbers) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    rig.scan();
    EXPECT_EQ(rig.column("directories", "id number", "[drive id number] = 2"),
              (std::vector<std::string>{"C2D1", "C2D1S1", "C2D1S1S1", "C2D1S2"}));
}

TEST(ScanCourse, AFreeNumberIsTheLowestThatNoDiscHoldsAndLeavesTheHighestAsItWas) {
    ScanRig rig;
    rig.insert(folder(""));
    for (int i = 0; i < 3; ++i)
        rig.scan();
    rig.discs.Recordset().FindFirst("[id number] = 2");
    rig.discs.Recordset().Delete();
    rig.scan({.DetailLevel = "basic", .ErrorAction = "ignore", .LogErrors = "true", .UseFreeNumber = "true"});
    EXPECT_EQ(rig.column("drive", "id number"), (std::vector<std::string>{"1", "3", "2"}))
        << "at the table's end, whatever its number";
    EXPECT_EQ(rig.master("scanned cd-roms"), "3");
    EXPECT_EQ(rig.field("directories", "[drive id number] = 2", "Total number of Subdirectories"), "0");
}

TEST(ScanCourse, TheNextNumberNeverGoesBack) {
    ScanRig rig;
    rig.insert(folder(""));
    rig.scan();
    rig.scan();
    rig.discs.Recordset().FindFirst("[id number] = 2");
    rig.discs.Recordset().Delete();
    rig.scan();
    EXPECT_EQ(rig.column("drive", "id number"), (std::vector<std::string>{"1", "3"}));
}

TEST(ScanCourse, YieldsComeOnceOrTwiceForEachFile) {
    ScanRig few;
    few.insert(folder("", {file("A")}));
    few.scan();
    const int one = few.watcher.yields;
    few.insert(folder("", {file("A"), file("B")}));
    few.scan();
    EXPECT_EQ(few.watcher.yields - one, one + 2) << "at basic detail, two for the file more";
}

// ---- Totals

TEST(Totals, ALeafsTotalsAreItsOwn) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1S2'", "Total Size"), "2");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1S2'", "Total number of files"), "1");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1S2'", "Total number of Subdirectories"), "0");
}

TEST(Totals, ADirectoryTakesInAllBeneathIt) {
    ScanRig rig;
    rig.insert(sampleDisc());
    rig.scan();
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total number of files"), "5");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total Size"), "2.0048828125");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total number of Subdirectories"), "2")
        << "two directly; the one deeper is a sum of exactly 1, which is dropped";
}

TEST(Totals, ASumOfExactlyOneIsDropped) {
    ScanRig rig;
    rig.insert(folder("", {file("A"), file("B"), folder("S", {file("ONLY", std::string(1024, 'x'))})}));
    rig.scan();
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total number of files"), "2");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total Size"), "0");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total number of Subdirectories"), "1");
}

TEST(Totals, ANumberThatBeginsLikeAnotherIsNotBeneathIt) {
    std::vector<MemoryNode> children;
    for (int i = 10; i < 20; ++i)
        children.push_back(folder("S" + std::to_string(i), {file("F"), file("G")}));
    ScanRig rig;
    rig.insert(folder("", children));
    rig.scan();
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1S1'", "Total number of files"), "2");
    EXPECT_EQ(rig.field("directories", "[id number] = 'C1D1'", "Total number of files"), "20");
}
