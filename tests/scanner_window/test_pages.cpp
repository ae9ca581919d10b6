#include "disc/DriveTable.h"
#include "scanner_window/WizardTest.h"
#include "support/windows/GoldenForm.h"

#include <QtCore/QMimeData>
#include <QtCore/QTemporaryFile>
#include <QtGui/QDropEvent>

using namespace discaro;
using namespace discaro::test;
using kit::Answer;
using kit::Buttons;
using kit::Icon;

namespace {

class Pages : public WizardTest {};

} // namespace

TEST_F(Pages, MatchesItsGoldenFile) {
    open();
    expectGolden(*form, "scanner_window");
}

TEST_F(Pages, NoTextIsCutAtAnyFontSize) {
    for (const double factor : {1.0, 1.25, 1.5}) {
        const LargerFont font(factor);
        open();
        EXPECT_EQ(cutTexts(*form), std::vector<std::string>{}) << factor;
        form->Unload();
    }
}

TEST_F(Pages, EveryControlOfTheKeyboardCanBeSpoken) {
    open();
    EXPECT_EQ(speechless(*form), std::vector<std::string>{});
}

TEST_F(Pages, TheFirstPageShowsFourLinesAndTheOptionsButton) {
    open();
    EXPECT_EQ(
        said(*form->Text1),
        "* The following screens will help you complete the task of scanning your CD-ROM.\r\n\r\n"
        "* If you wish to exit at any time just press cancel.\r\n\r\n"
        "* If you want to go back to a certain screen to verify or change your enteries , use the "
        "Back "
        "button.\r\n\r\n"
        "* You can choose the detail level and error action by pressing the Options button now.");
    for (QWidget* hidden :
         {static_cast<QWidget*>(form->Text2), static_cast<QWidget*>(form->Label2),
          static_cast<QWidget*>(form->Label3), static_cast<QWidget*>(form->Drive1),
          static_cast<QWidget*>(form->Check1)})
        EXPECT_FALSE(hidden->isVisible()) << hidden->objectName().toStdString();
    EXPECT_TRUE(form->Command4->isVisible());
    EXPECT_FALSE(button(1).isEnabled());
    EXPECT_FALSE(button(3).isEnabled());
}

TEST_F(Pages, LoadUnloadsLoadingAndNamesTheTrayIcon) {
    app::Windows::Show("Loading");
    open();
    EXPECT_FALSE(isUp("Loading"));
    EXPECT_EQ(form->TrayIcon1->toolTipText(), "Discaro - Scan a new CD-ROM");
    EXPECT_FALSE(form->TrayIcon1->isVisible());
    EXPECT_TRUE(form->TrayIcon2->isVisible());
    EXPECT_FALSE(form->TrayIcon2->trueClick());
}

TEST_F(Pages, TheNamePageStartsEmptyWithTheDriveOfTheDisc) {
    open();
    next();
    EXPECT_TRUE(form->Text2->isVisible());
    EXPECT_EQ(form->Text2->text(), "");
    EXPECT_EQ(form->Label2->text(), "Preferred Name");
    EXPECT_FALSE(form->Check1->value());
    EXPECT_TRUE(form->Drive1->text().startsWith(QChar(letter)));
    EXPECT_FALSE(form->Command4->isVisible());
    EXPECT_TRUE(button(1).isEnabled());
}

TEST_F(Pages, AnEmptyNameStopsOnPageTwo) {
    open();
    next();
    box.expect("You must enter a Preferred name.", Buttons::Ok, Icon::Exclamation, "Error");
    next();
    EXPECT_TRUE(form->Text2->isVisible());
}

TEST_F(Pages, ADriveThatIsNoDiscDriveStopsOnPageTwoWithABeep) {
    open();
    next();
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    form->Drive1->setListIndex(0);
    typeInto(*form->Text2, "Disc");
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::Exclamation, "Error");
    next();
    EXPECT_EQ(beeps.count(), 2);
    EXPECT_TRUE(form->Text2->isVisible());
}

TEST_F(Pages, ChoosingADriveThatIsNoDiscDriveEmptiesTheNameUnlessTheLabelIsUsed) {
    goTo(2);
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    form->Drive1->setListIndex(0);
    EXPECT_EQ(form->Text2->text(), "");
}

TEST_F(Pages, ChoosingADiscDriveKeepsTheTypedName) {
    open();
    next();
    typeInto(*form->Text2, "Typed");
    chooseTestDrive();
    EXPECT_EQ(form->Text2->text(), "Typed");
}

TEST_F(Pages, ADuplicateNameStopsOnPageTwo) {
    addDisc(7, "Disc", "AAAA-AAAA");
    goTo(2);
    box.expect("This Preferred name was used once before for CD-ROM number  '7' which has 'LABEL' "
               "as its Volume label. "
               "Please choose another name.",
               Buttons::Ok, Icon::Exclamation, "Duplicate Preferred Name");
    next();
    EXPECT_TRUE(form->Text2->isVisible());
}

TEST_F(Pages, ANameInOtherLetterCasePasses) {
    addDisc(7, "DISC", "AAAA-AAAA");
    goTo(3);
    EXPECT_TRUE(form->Text3->isVisible());
}

TEST_F(Pages, EachDiscOfTheSameSerialIsAskedAboutAndOkGoesOn) {
    addDisc(1, "One", "0123-4567");
    addDisc(2, "Two", "0123-4567");
    goTo(2);
    for (const char* name : {"One", "Two"})
        box.expect(QString("The CD-ROM named  '%1'  has the same serial number as this CD-ROM. You "
                           "may have scanned "
                           "it once before. Press Cancel to terminate this scan or press OK to "
                           "ignore this fact and "
                           "continue.")
                       .arg(name),
                   Buttons::OkCancel, Icon::Exclamation, "Duplicate Serial Number");
    next();
    EXPECT_TRUE(form->Text3->isVisible());
}

TEST_F(Pages, CancelAtASerialQuestionStaysOnPageTwo) {
    addDisc(1, "One", "0123-4567");
    addDisc(2, "Two", "0123-4567");
    goTo(2);
    box.expect(
        "The CD-ROM named  'One'  has the same serial number as this CD-ROM. You may have scanned "
        "it once "
        "before. Press Cancel to terminate this scan or press OK to ignore this fact and continue.",
        Buttons::OkCancel, Icon::Exclamation, "Duplicate Serial Number", Answer::Cancel);
    next();
    EXPECT_TRUE(form->Text2->isVisible());
}

TEST_F(Pages, TheVolumeLabelBecomesTheNameAndGoesWithTheTick) {
    goTo(2);
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "MEMORY");
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "");
}

TEST_F(Pages, ADiscWithoutALabelEmptiesTheNameAndNextAsksForOne) {
    insert(folder("")).volume.label.clear();
    goTo(2);
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "");
    box.expect("You must enter a Preferred name.", Buttons::Ok, Icon::Exclamation, "Error");
    next();
}

TEST_F(Pages, AnUnlabelledDriveReadsBackAsItsRootAndALabelledOneDoesNot) {
    EXPECT_EQ(drives.shownText(letter), std::string(1, letter) + ": [MEMORY]");
    insert(folder("")).volume.label.clear();
    EXPECT_EQ(drives.shownText(letter), std::string(1, letter) + ":\\");
}

TEST_F(Pages, TheLoopEndsAtTheFirstDiscDriveThatReadsBackAsItsRoot) {
    insert(folder("")).volume.label.clear();
    addDrive(folder(""));
    open();
    next();
    EXPECT_EQ(form->Drive1->text(), "D:\\");
}

TEST_F(Pages, WithSeveralLabelledDiscDrivesTheLastStaysChosen) {
    addDrive(folder(""));
    addDrive(folder(""));
    open();
    next();
    EXPECT_EQ(form->Drive1->text(), "F: [MEMORY]");
}

TEST_F(Pages, ADriveThatIsNoDiscDriveNeverComesIntoTheLoop) {
    drives.addMedium(std::make_unique<MemoryMedium>(folder("")), disc::DriveType::Removable);
    open();
    next();
    EXPECT_EQ(form->Drive1->text(), "D: [MEMORY]");
}

TEST_F(Pages, GoingBackToTheNamePageChoosesTheDriveAnew) {
    addDrive(folder(""));
    goTo(3);
    back();
    EXPECT_EQ(form->Drive1->text(), "E: [MEMORY]");
}

TEST_F(Pages, TheTickTakesTheLabelOfTheDiscThatIsInTheDriveNow) {
    goTo(2);
    insert(folder("")).volume.label = "CHANGED";
    form->Check1->click();
    EXPECT_EQ(form->Text2->text(), "CHANGED");
}

TEST_F(Pages, WithTheTickADriveThatIsNoDiscDriveGivesItsLabelAsTheName) {
    auto stick = std::make_unique<MemoryMedium>(folder(""));
    stick->volume.label = "STICK";
    drives.addMedium(std::move(stick), disc::DriveType::Removable);
    goTo(2);
    form->Check1->click();
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    form->Drive1->setListIndex(2);
    EXPECT_EQ(form->Text2->text(), "STICK");
    EXPECT_EQ(beeps.count(), 1);
}

TEST_F(Pages, GoingBackToPageTwoLosesTheName) {
    goTo(3);
    back();
    EXPECT_EQ(form->Text2->text(), "");
    box.expect("You must enter a Preferred name.", Buttons::Ok, Icon::Exclamation, "Error");
    next();
}

TEST_F(Pages, GoingBackToPageOneHidesTheEntries) {
    goTo(2);
    back();
    EXPECT_FALSE(form->Text2->isVisible());
    EXPECT_TRUE(form->Command4->isVisible());
    EXPECT_FALSE(button(1).isEnabled());
}

TEST_F(Pages, TheCheckPageCountsTheDisc) {
    goTo(4);
    EXPECT_EQ(said(*form->Text1),
              "* The program will now quickly check your CD-ROM's information.");
    EXPECT_EQ(said(*form->Text4), "1 Directories\r\n3 Files");
    EXPECT_TRUE(button(0).isEnabled());
    EXPECT_FALSE(button(3).isEnabled());
}

TEST_F(Pages, GoingBackFromTheSettingsShowsTheOldCountsWithoutCounting) {
    auto& medium = insert(folder("", {file("A")}));
    goTo(5);
    const int listings = medium.calls(Asked::List);
    back();
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n1 Files");
    EXPECT_EQ(medium.calls(Asked::List), listings);
}

TEST_F(Pages, GoingForwardAgainCountsAfresh) {
    goTo(4);
    back();
    next();
    EXPECT_EQ(said(*form->Text4), "1 Directories\r\n3 Files");
    back();
    insert(folder("", {file("ONE")}));
    next();
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n1 Files") << "the disc was changed meanwhile";
}

TEST_F(Pages, NeitherButtonLeavesThePageWhileTheQuickScanRuns) {
    insert(folder("", {folder("A"), folder("B")}));
    goTo(3);
    int looks = 0;
    QTimer::singleShot(0, form, [&] {
        ++looks;
        for (const int index : {0, 1, 2, 3})
            EXPECT_FALSE(button(index).isEnabled()) << index;
        form->close();
        QTest::keyClick(form, Qt::Key_Escape);
    });
    next();
    EXPECT_EQ(looks, 1);
    EXPECT_TRUE(isUp("Scanform"));
    EXPECT_EQ(beeps.count(), 1) << "the frame's button says that it can't";
    EXPECT_EQ(said(*form->Text4), "2 Directories\r\n0 Files");
}

TEST_F(Pages, ADiscOfAnUnknownKindIsToldAndAnotherCanBeChosen) {
    insert(folder("")).failOn(Asked::List, 1, ErrorNumber::FileSystemUnsupported, 1000);
    goTo(3);
    box.expectTitled("Error", Icon::Exclamation);
    next();
    EXPECT_TRUE(form->Text3->isVisible()) << "still on the page before";
    EXPECT_TRUE(button(2).isEnabled());
    letter = addDrive(folder("", {file("A")}));
    back();
    chooseTestDrive();
    typeInto(*form->Text2, "Disc");
    next();
    next();
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n1 Files");
}

TEST_F(Pages, TheSettingsPageShowsEverything) {
    open();
    next();
    chooseTestDrive();
    typeInto(*form->Text2, "My disc");
    next();
    typeInto(*form->Text3, "from the shelf");
    next();
    next();
    const std::string drive = form->Drive1->text().toStdString();
    EXPECT_EQ(said(*form->Text1),
              "* These are the final settings for your CD-ROM.\r\n\r\n* To start scanning press "
              "Finish.\r\n\r\n"
              "* To exit press Cancel.\r\n\r\nPreferred Name:\r\n      My disc\r\n\r\nDrive "
              "Name:\r\n      " +
                  drive +
                  "\r\n\r\nComments:\r\n      from the shelf\r\n\r\n"
                  "* This CD-ROM will be scanned with basic details ignoring all errors.\r\n\r\n"
                  "* The CD-ROM contains :-\r\n   1 Directories\r\n   3 Files");
    EXPECT_FALSE(button(2).isEnabled());
    EXPECT_TRUE(button(3).isEnabled());
}

TEST_F(Pages, FinishLeadsToTheScanningScreenAndWritesNothing) {
    goToScanning();
    EXPECT_FALSE(form->Picture1->isVisible());
    EXPECT_TRUE(form->Picture2->isVisible());
    EXPECT_EQ(said(*form->Text5), "* Your CD-ROM will now be scanned.\r\n\r\n* This may take a lot "
                                  "of time.This depends on the number of "
                                  "files on your CD-ROM (the more files there are in a directory , "
                                  "the more time it takes to scan this "
                                  "directory) and the speed of your drive.\r\n\r\n* Press Start "
                                  "scan to begin , or Cancel to exit.");
    for (const int index : {5, 6, 7})
        EXPECT_FALSE(button(index).isEnabled()) << index;
    EXPECT_FALSE(form->Command5->isVisible());
    EXPECT_FALSE(form->Command6->isVisible());
    EXPECT_EQ(count("drive"), 0);
}

TEST_F(Pages, AVanishedDiscEndsTheQuickScanAndShowsTheMenuWhateverReturnToSays) {
    auto& medium = insert(folder("", {folder("A"), folder("B")}));
    goTo(3);
    app::Module1::ReturnTo = "explore";
    medium.vanishAfter(0);
    box.expect("An error was found during the Quickscan operation. The scan will be cancelled.",
               Buttons::Ok, Icon::Critical, "Error during Quickscan");
    next();
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
}

TEST_F(Pages, ADriveWithoutADiscEndsTheProgramAtTheQuickScan) {
    insert(folder("")).vanishAfter(0);
    goTo(3);
    const ThrowingEnd end;
    box.expectTitled(QCoreApplication::applicationName(), Icon::Critical);
    EXPECT_THROW(asHandler([this] { emit button(2).Click(); }), ProgramEnded);
}

// ---- Ways out

TEST_F(Pages, CancelReturnsToTheMenu) {
    open();
    click(button(0));
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
}

TEST_F(Pages, CancelReturnsToTheExplorerWhenItCameFromThere) {
    app::Module1::ReturnTo = "explore";
    open();
    click(button(0));
    EXPECT_TRUE(isUp("EXMain"));
    EXPECT_FALSE(isUp("Switch"));
}

TEST_F(Pages, AnyOtherReturnWordShowsNothing) {
    app::Module1::ReturnTo = "elsewhere";
    open();
    click(button(0));
    EXPECT_FALSE(isUp("EXMain") || isUp("Switch"));
}

TEST_F(Pages, ClosingTheFrameIsTheWayOutToo) {
    goTo(3);
    form->close();
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
    EXPECT_EQ(count("drive"), 0);
}

// ---- Discs of the user's own

TEST_F(Pages, AFileThatIsNoDiscIsRefusedWithAClearMessage) {
    QTemporaryFile text;
    ASSERT_TRUE(text.open());
    text.write(QByteArray(100000, 'x'));
    text.flush();
    open();
    next();
    box.expectTitled("Error", Icon::Exclamation);
    const QString before = form->Drive1->text();
    form->addDisc(text.fileName());
    EXPECT_EQ(form->Drive1->text(), before);
    EXPECT_TRUE(box.last().text.contains("not a disc image")) << box.last().text.toStdString();
}

TEST_F(Pages, ADroppedFolderBecomesTheChosenDriveAndOpensPageTwo) {
    const std::filesystem::path folder = app::Module1::ApplicationPath / "dropped";
    std::filesystem::create_directory(folder);
    open();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(folder.string()))});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(form, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(form, &drop);
    EXPECT_TRUE(form->Text2->isVisible());
    EXPECT_TRUE(form->Drive1->text().contains("[dropped]")) << form->Drive1->text().toStdString();
    EXPECT_EQ(box.asked(), 0);
    EXPECT_EQ(drop.dropAction(), Qt::CopyAction) << "the folder stays where it is";
}

TEST_F(Pages, WhatIsNoFileOrComesTooLateIsNotTakenAsADisc) {
    const auto accepted = [this](const char* url) {
        QMimeData data;
        data.setUrls({QUrl(url)});
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(form, &enter);
        return enter.isAccepted();
    };
    open();
    EXPECT_TRUE(accepted("file:///tmp/disc.iso"));
    EXPECT_FALSE(accepted("http://localhost/disc.iso"));
    EXPECT_FALSE(form->Text2->editor().acceptDrops()) << "the window takes it, not the name";
    goTo(3);
    EXPECT_FALSE(accepted("file:///tmp/disc.iso"));
}

// ---- The keyboard and the wheel

TEST_F(Pages, TheTabKeyFollowsTheReadingOrder) {
    goTo(2);
    std::vector<std::string> reached;
    for (const auto& name : tabOrder(*form))
        if (control<QWidget>(*form, name.c_str()).isVisible())
            reached.push_back(name);
    EXPECT_EQ(reached, (std::vector<std::string>{"Text1", "Text2", "Check1", "Drive1", "DiscImage",
                                                 "Command1(0)", "Command1(1)", "Command1(2)",
                                                 "Command1(3)"}));
}

TEST_F(Pages, EnterLeadsOnAndEscapeOut) {
    open();
    EXPECT_EQ(form->focusWidget(), &button(2));
    QTest::keyClick(&button(2), Qt::Key_Return);
    chooseTestDrive();
    typeInto(*form->Text2, "Disc");
    QTest::keyClick(form->Text2, Qt::Key_Return);
    EXPECT_TRUE(form->Text3->isVisible());
    QTest::keyClick(form->Text3, Qt::Key_Escape);
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
}

TEST_F(Pages, TheWheelTurnsTheDrivesOnlyWhenTheyHaveTheFocus) {
    goTo(2);
    const auto turn = [this] {
        QWheelEvent wheel(QPointF(5, 5), form->Drive1->mapToGlobal(QPointF(5, 5)), QPoint(),
                          QPoint(0, 120), Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(form->Drive1, &wheel);
    };
    form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(form));
    form->Text2->setFocus();
    turn();
    EXPECT_EQ(form->Drive1->text(), "D: [MEMORY]");
    form->Drive1->setFocus();
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    turn();
    EXPECT_EQ(form->Drive1->text(), "C:\\");
}
