#include "disc/drives/DriveTable.h"
#include "scanner/WizardTest.h"
#include "support/windows/GoldenForm.h"

#include <algorithm>

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
    expectGolden(*form, "scanner");
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
    EXPECT_EQ(said(*form->Text1),
              "* The following screens will help you complete the task of scanning your CD-ROM.\r\n\r\n"
              "* If you wish to exit at any time just press cancel.\r\n\r\n"
              "* If you want to go back to a certain screen to verify or change your enteries , use the "
              "Back "
              "button.\r\n\r\n"
              "* You can choose the detail level and error action by pressing the Options button now.");
    for (QWidget* hidden :
         {static_cast<QWidget*>(form->Text2), static_cast<QWidget*>(form->Label2), static_cast<QWidget*>(form->Label3),
          static_cast<QWidget*>(form->Drive1), static_cast<QWidget*>(form->Check1)})
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

TEST_F(Pages, TheNamePageTellsWhatToEnter) {
    goTo(2);
    EXPECT_EQ(said(*form->Text1), "* Enter a name that you wish to identify your CD-ROM with. This name will be "
                                  "referred to as the 'Preferred Name' in the future.\r\n\r\n"
                                  "* If you leave this entry empty , the volume label can be used instead.\r\n\r\n"
                                  "* Also choose the drive you are going to scan.");
    for (QWidget* shown : {static_cast<QWidget*>(form->Label3), static_cast<QWidget*>(form->Drive1),
                           static_cast<QWidget*>(form->Check1), static_cast<QWidget*>(form->Label2)})
        EXPECT_TRUE(shown->isVisible()) << shown->objectName().toStdString();
    EXPECT_FALSE(form->Text3->isVisible());
}

TEST_F(Pages, TheCommentsPageShowsOneEntry) {
    goTo(3);
    EXPECT_EQ(said(*form->Text1), "* Enter any comments that you would like to be associated with "
                                  "this CD-ROM.");
    for (QWidget* hidden :
         {static_cast<QWidget*>(form->Check1), static_cast<QWidget*>(form->Label3), static_cast<QWidget*>(form->Drive1),
          static_cast<QWidget*>(form->Text2), static_cast<QWidget*>(form->Text4)})
        EXPECT_FALSE(hidden->isVisible()) << hidden->objectName().toStdString();
    EXPECT_EQ(form->Label2->text(), "Comments");
    EXPECT_EQ(form->focusWidget(), form->Text3->focusProxy());
}

TEST_F(Pages, TheCheckPageHidesTheEntries) {
    goTo(4);
    EXPECT_EQ(form->Label2->text(), "");
    EXPECT_FALSE(form->Text3->isVisible());
    EXPECT_TRUE(form->Text4->isVisible());
}

TEST_F(Pages, CountsAreShownWithoutThousandsSeparators) {
    std::vector<MemoryNode> files(1234, file("F"));
    insert(folder("", files));
    goTo(4);
    EXPECT_EQ(said(*form->Text4), "0 Directories\r\n1234 Files");
}

TEST_F(Pages, TheCountTravelsThroughTheDisc) {
    insert(folder("", {folder("A", {folder("B")}), folder("C")}));
    goTo(3);
    std::vector<std::string> shown;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, form, [&] { shown.push_back(form->Text4->text().toStdString()); });
    watch.start(0);
    next();
    const std::string root = std::string(1, letter) + ":\\";
    for (const std::string& path : {root + "A\\B", root + "A", root + "C", root})
        EXPECT_NE(std::ranges::find(shown, path), shown.end()) << path;
}

TEST_F(Pages, TheFirstCheckThatStopsIsTheOnlyOneThatIsTold) {
    addDisc(7, "Disc", "0123-4567");
    addDisc(8, "Disc", "0123-4567");
    open();
    next();
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::None, "Error");
    form->Drive1->setListIndex(0);
    box.expect("You must enter a Preferred name.", Buttons::Ok, Icon::Exclamation, "Error");
    next();
    typeInto(*form->Text2, "Disc");
    box.expect("You must choose a CD-ROM Drive", Buttons::Ok, Icon::Exclamation, "Error");
    next();
    chooseTestDrive();
    box.expect("This Preferred name was used once before for CD-ROM number  '7' which has 'LABEL' "
               "as its Volume label. Please choose another name.",
               Buttons::Ok, Icon::Exclamation, "Duplicate Preferred Name");
    next();
    EXPECT_TRUE(form->Text2->isVisible());
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
    box.expect("The CD-ROM named  'One'  has the same serial number as this CD-ROM. You may have scanned "
               "it once "
               "before. Press Cancel to terminate this scan or press OK to ignore this fact and continue.",
               Buttons::OkCancel, Icon::Exclamation, "Duplicate Serial Number", Answer::Cancel);
    next();
    EXPECT_TRUE(form->Text2->isVisible());
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
    EXPECT_EQ(said(*form->Text1), "* The program will now quickly check your CD-ROM's information.");
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
        EXPECT_EQ(form->focusWidget(), form->Text1->focusProxy());
        form->close();
        QTest::keyClick(form, Qt::Key_Escape);
    });
    next();
    EXPECT_EQ(looks, 1);
    EXPECT_TRUE(isUp("Scanform"));
    EXPECT_EQ(beeps.count(), 2) << "the frame's button and the key say that they can't";
    EXPECT_EQ(said(*form->Text4), "2 Directories\r\n0 Files");
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
    EXPECT_EQ(said(*form->Text1), "* These are the final settings for your CD-ROM.\r\n\r\n* To start scanning press "
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

// ---- The keyboard and the wheel

TEST_F(Pages, TheTabKeyFollowsTheReadingOrder) {
    goTo(2);
    std::vector<std::string> reached;
    for (const auto& name : tabOrder(*form))
        if (control<QWidget>(*form, name.c_str()).isVisible())
            reached.push_back(name);
    EXPECT_EQ(reached, (std::vector<std::string>{"Text1", "Text2", "Check1", "Drive1", "DiscImage", "Command1(0)",
                                                 "Command1(1)", "Command1(2)", "Command1(3)"}));
}

TEST_F(Pages, AnEnterKeyThatIsHeldLeadsOnePageOn) {
    goTo(4);
    const auto press = [this](bool repeated) {
        QKeyEvent event(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, repeated);
        QCoreApplication::sendEvent(form->focusWidget(), &event);
    };
    press(false);
    EXPECT_TRUE(button(3).isEnabled()) << "page 5";
    for (int repeat = 0; repeat < 5; ++repeat)
        press(true);
    EXPECT_TRUE(form->Picture1->isVisible()) << "and no further";
}

TEST_F(Pages, EscapeLeavesWhereNothingTypedIsLost) {
    goTo(2);
    QTest::keyClick(form->Text2, Qt::Key_Escape);
    EXPECT_TRUE(isUp("Scanform")) << "with a name";
    EXPECT_EQ(form->Text2->text(), "Disc");
    EXPECT_EQ(beeps.count(), 1);
    form->Text2->setText({});
    QTest::keyClick(form->Text2, Qt::Key_Escape);
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
}

TEST_F(Pages, EscapeDoesNotLoseALabelThatWasEdited) {
    open();
    next();
    form->Check1->click();
    const QString label = form->Text2->text();
    ASSERT_FALSE(label.isEmpty());
    typeInto(*form->Text2, "mine");
    const QString typed = form->Text2->text();
    ASSERT_NE(typed, label);
    QTest::keyClick(form->Text2, Qt::Key_Escape);
    EXPECT_TRUE(isUp("Scanform"));
    EXPECT_EQ(form->Text2->text(), typed);
    EXPECT_EQ(beeps.count(), 1);
    form->Text2->setText(label);
    QTest::keyClick(form->Text2, Qt::Key_Escape);
    EXPECT_FALSE(isUp("Scanform"));
}

TEST_F(Pages, EscapeDoesNotLoseTypedCommentsOnAnyScreen) {
    open();
    next();
    form->Check1->click();
    next();
    typeInto(*form->Text3, "mine");
    next();
    next();
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_TRUE(isUp("Scanform"));
    click(button(3));
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_TRUE(isUp("Scanform"));
    form->Text3->setText({});
    QTest::keyClick(form, Qt::Key_Escape);
    EXPECT_FALSE(isUp("Scanform")) << "the label as the name is not typed";
}

TEST_F(Pages, EnterLeadsOnAndEscapeOut) {
    open();
    EXPECT_EQ(form->focusWidget(), &button(2));
    QTest::keyClick(&button(2), Qt::Key_Return);
    chooseTestDrive();
    typeInto(*form->Text2, "Disc");
    QTest::keyClick(form->Text2, Qt::Key_Return);
    EXPECT_TRUE(form->Text3->isVisible());
    form->Text2->setText({});
    QTest::keyClick(form->Text3, Qt::Key_Escape);
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
}
