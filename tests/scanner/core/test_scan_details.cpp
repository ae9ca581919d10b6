#include "scanner/DiscFiles.h"
#include "scanner/core/ScanRig.h"
#include "support/ExecutableBuilder.h"

#include <gtest/gtest.h>

// What full detail reads out of executables, and the two files in which discs and directories describe themselves.
namespace discaro::test {
namespace {

scanner::ScanOptions detail(const char* level) {
    return {.DetailLevel = level, .ErrorAction = "ignore", .LogErrors = "true", .UseFreeNumber = {}};
}

MemoryNode executable(const char* name, const std::vector<Resource>& resources) {
    return file(name, peFile(resources).bytes);
}

Resource versionResource() {
    return {kVersionType, uint16_t{1}, wideVersion(sampleVersion())};
}

} // namespace

TEST(Executables, TheSevenTextsAndTheIconsLandEachInItsField) {
    auto resources = iconResources(3);
    resources.push_back(versionResource());
    ScanRig rig;
    rig.insert(folder("", {executable("SETUP.EXE", resources)}));
    rig.scan(detail("all"));
    const auto of = [&](std::string_view field) { return rig.field("files", {}, field); };
    const disc::VersionTexts texts = sampleTexts();
    ASSERT_FALSE(texts.companyName.empty());
    EXPECT_EQ(of("Company Name"), texts.companyName);
    EXPECT_EQ(of("Description"), texts.fileDescription);
    EXPECT_EQ(of("Copyright"), texts.legalCopyright);
    EXPECT_EQ(of("Product name"), texts.productName);
    EXPECT_EQ(of("Product Version"), texts.productVersion);
    EXPECT_EQ(of("Internal Name"), texts.internalName);
    EXPECT_EQ(of("Original file Name"), texts.originalFileName);
    EXPECT_EQ(of("number of icons"), "3");
    EXPECT_EQ(rig.errorLog, "");
}

TEST(Executables, OneWithoutAVersionHasEmptyTextsAndItsRealIconCount) {
    ScanRig rig;
    rig.insert(folder("", {executable("PLAIN.EXE", iconResources(5))}));
    rig.scan(detail("all"));
    for (const char* field : {"Company Name", "Description", "Copyright", "Product name", "Product Version",
                              "Internal Name", "Original file Name"}) {
        EXPECT_FALSE(rig.isNull("files", {}, field)) << field;
        EXPECT_EQ(rig.field("files", {}, field), "") << field;
    }
    EXPECT_EQ(rig.field("files", {}, "number of icons"), "5");
}

TEST(Executables, TheTextsOfOneAreNotThoseOfTheNext) {
    ScanRig rig;
    rig.insert(folder(
        "", {executable("A.EXE", {versionResource()}), file("B.TXT", "plain"), executable("C.EXE", iconResources(1))}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.column("files", "Company Name"), (std::vector<std::string>{sampleTexts().companyName, "", ""}));
    EXPECT_EQ(rig.column("files", "number of icons"), (std::vector<std::string>{"0", "0", "1"}));
}

TEST(Executables, OneThatCannotBeOpenedHasNothingOfTheOneBefore) {
    ScanRig rig;
    rig.insert(folder(
        "", {executable("A.EXE", {versionResource()}), file("B.EXE", "MZ").withOpenFailure(ErrorNumber::ReadFailure)}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("files", "[file name] = 'B.EXE'", "Company Name"), "");
    EXPECT_EQ(rig.errorLog, "\r\n\r\nThe disc could not be read in File :- B.EXE");
}

TEST(Executables, OfOneThatCannotBeReadJustTheTextsAndIconsStayEmpty) {
    ScanRig rig;
    rig.insert(folder("", {file("A.EXE", "MZ").withOpenFailure(ErrorNumber::ReadFailure)}));
    rig.scan(detail("all"));
    for (const char* field : {"Company Name", "Description", "Copyright", "Product name", "Product Version",
                              "Internal Name", "Original file Name", "number of icons"})
        EXPECT_TRUE(rig.isNull("files", {}, field)) << field;
    EXPECT_EQ(rig.field("files", {}, "file size"), "0.001953125");
    EXPECT_EQ(rig.field("files", {}, "Attributes"), "R");
    EXPECT_FALSE(rig.isNull("files", {}, "file time"));
}

TEST(Executables, TextsThatWereReadStayWhenTheIconsCannotBe) {
    auto resources = iconResources(1000);
    resources.push_back(versionResource());
    const auto disc = folder("", {executable("A.EXE", resources)});
    int reads = 0;
    {
        ScanRig rig;
        const auto& medium = rig.insert(disc);
        rig.scan(detail("all"));
        reads = medium.calls(Asked::Read);
    }
    ScanRig rig;
    rig.insert(disc).failOn(Asked::Read, reads); // the last of the icons
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("files", {}, "Company Name"), sampleTexts().companyName);
    EXPECT_TRUE(rig.isNull("files", {}, "number of icons"));
    EXPECT_EQ(rig.errorLog, "\r\n\r\nThe disc could not be read in File :- A.EXE");
}

TEST(Executables, OneThatCannotBeReadStillLetsASetupIniBehindItName) {
    ScanRig rig;
    rig.insert(folder("", {file("A.EXE", "MZ").withOpenFailure(ErrorNumber::ReadFailure),
                           file("setup.ini", "[Startup]\nAppName=Named")}));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.field("directories", {}, "Comments"), "Named");
}

// ---- setup.ini and autorun.inf

TEST(SetupIni, IsLookedForWithTwoBackslashesInARoot) {
    EXPECT_EQ(scanner::setupPath("D:\\"), "D:\\\\setup.ini");
    EXPECT_EQ(scanner::setupPath("D:\\DIR"), "D:\\DIR\\setup.ini");
}

TEST(SetupIni, OpensBehindTwoBackslashes) {
    ScanRig rig;
    rig.insert(folder("", {file("SETUP.INI", "[Startup]\r\nAppName=Rooted")}));
    rig.lister.setPath(rig.root);
    EXPECT_EQ(scanner::readSetupName(rig.lister, rig.root + "\\setup.ini"), "Rooted");
}

TEST(SetupIni, OfTwoSpellingsTheSmallOneIsRead) {
    const auto both = [] {
        return std::vector{file("setup.ini", "[Startup]\nAppName=Small"),
                           file("SETUP.INI", "[Startup]\nAppName=Capital")};
    };
    auto inRoot = both();
    inRoot.push_back(folder("DIR", both()));
    ScanRig rig;
    rig.insert(folder("", inRoot));
    rig.scan(detail("all"));
    EXPECT_EQ(rig.column("directories", "Comments"), (std::vector<std::string>{"Small", "Small"}))
        << "whichever the enumeration gave last";
}

TEST(Autorun, IsReadAtMinimalDetailWhereNoFileOfTheWalkIsOpened) {
    ScanRig rig;
    auto& medium = rig.insert(folder("", {file("Autorun.inf", "[autorun]\nicon=a.ico"), file("B")}));
    rig.scan(detail("minimal"));
    EXPECT_EQ(rig.field("drive", {}, "Autorun"), "\r\n[autorun]\r\nicon=a.ico");
    EXPECT_EQ(medium.calls(Asked::Open), 1);
}

TEST(Autorun, OfOneThatFailsMidwayTheLinesReadSoFarStay) {
    std::string text;
    for (int i = 0; i < 20000; ++i)
        text += "line" + std::to_string(i) + "=value\r\n";
    ScanRig rig;
    rig.insert(folder("", {file("autorun.inf", text).withReadFailure(ErrorNumber::ReadFailure)}));
    rig.scan();
    const std::string lines = rig.field("drive", {}, "Autorun");
    EXPECT_TRUE(lines.starts_with("\r\nline0=value\r\nline1=value\r\n"));
    EXPECT_TRUE(lines.ends_with("=value"));
    EXPECT_LT(lines.size(), text.size() / 2 + 100);
    EXPECT_TRUE(("\r\n" + text).starts_with(lines + "\r\n"));
    EXPECT_EQ(rig.errorLog, "");
}

TEST(Autorun, ADirectoryOfThatNameIsNoFile) {
    ScanRig rig;
    rig.insert(folder("", {folder("autorun.inf", {file("A")})}));
    rig.scan();
    EXPECT_TRUE(rig.isNull("drive", {}, "Autorun"));
}

} // namespace discaro::test
