#include "base/RuntimeError.h"
#include "catalogue/EmptyCatalogue.h"
#include "catalogue/Names.h"
#include "db/DBEngine.h"
#include "db/sqlite/Connection.h"
#include "scanner/WizardTest.h"
#include "support/Files.h"
#include "support/RawDatabase.h"

#include <QtGui/QAccessible>

#include <filesystem>
#include <ostream>
#include <set>

using namespace discaro;
using namespace discaro::test;
using kit::Answer;
using kit::Buttons;
using kit::Icon;

namespace {

constexpr auto kCancelText =
    "You have choosen to terminate the scan process. The scan operation will be stopped and the "
    "scanned enteries will "
    "be deleted. Press OK to proceed with deletion or press Cancel to continue.";
constexpr auto kErrorText = "An error was found during the scan process. The scan operation will be stopped and the "
                            "scanned enteries will be "
                            "deleted. Press OK to proceed with deletion or press Cancel to ignore this error.";
constexpr auto kUnfinishedText =
    "The last CD-ROM scan was not successfully terminated. This may cause your database to act "
    "wierdly. If this "
    "happens try repairing your database or restore it from the database workshop.";

class Scanning : public WizardTest {
protected:
    void scan() {
        goToScanning();
        click(*form->Command2);
    }
    // Runs an action in the middle of the scan, in a yield.
    void duringScan(std::function<void()> action) { QTimer::singleShot(0, form, std::move(action)); }
};

// The values that the upper bar is painted with while the totals are computed.
class BarProbe : public QObject {
public:
    explicit BarProbe(scanner::Scanform& form)
        : m_form(form) {
        form.ProgressBar1->installEventFilter(this);
    }

    std::set<int> values;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint && m_form.Picture4(1).isVisible())
            values.insert(m_form.ProgressBar1->QProgressBar::value());
        return false;
    }

private:
    scanner::Scanform& m_form;
};

MemoryNode manyFiles() {
    std::vector<MemoryNode> files;
    for (int i = 0; i < 50; ++i)
        files.push_back(file("F" + std::to_string(i) + ".TXT", "x"));
    return folder("", files);
}

} // namespace

TEST_F(Scanning, BringsTheDiscIntoTheCatalogueAndSaysSo) {
    scan();
    EXPECT_EQ(count("drive"), 1);
    EXPECT_EQ(count("directories"), 2);
    EXPECT_EQ(count("files"), 3);
    EXPECT_EQ(field("drive", "prefered name"), "Disc");
    EXPECT_EQ(said(*form->Text5), "* Your CD-ROM was successfully scanned. Press Finish to return to the Main Menu.");
    EXPECT_TRUE(button(7).isEnabled());
    EXPECT_FALSE(form->Command6->isVisible());
    EXPECT_TRUE(form->Command5->isVisible());
    EXPECT_EQ(beeps.count(), 1);
}

TEST_F(Scanning, TheDisplayEndsAtTheFullCountAndPercentage) {
    scan();
    EXPECT_EQ(form->NumLED1(0).caption(), "3+");
    EXPECT_EQ(form->NumLED1(1).caption(), "0-");
    EXPECT_EQ(form->caption(), "Discaro - Scan a new CD-ROM  (100 % Done)");
    EXPECT_EQ(form->TrayIcon1->toolTipText(), "Discaro - Scan a new CD-ROM  (100 % Done)");
    EXPECT_EQ(form->NumLED3->caption(), "-00:00");
    EXPECT_TRUE(form->Picture3(2).isVisible());
    EXPECT_FALSE(form->Picture3(1).isVisible());
    EXPECT_TRUE(form->Picture4(2).isVisible());
    EXPECT_FALSE(form->Picture4(3).isVisible());
    EXPECT_FALSE(form->Timer2->isEnabled());
    EXPECT_EQ(form->ProgressBar2->toolTip(), "100 %");
}

TEST_F(Scanning, WhileItRunsTheIconsAreSwappedAndOnlyCancelScanningIsOffered) {
    goToScanning();
    bool looked = false;
    duringScan([&] {
        looked = true;
        EXPECT_FALSE(form->Command2->isVisible());
        EXPECT_TRUE(form->Command6->isVisible());
        EXPECT_FALSE(button(4).isEnabled());
        EXPECT_TRUE(form->TrayIcon1->isVisible());
        EXPECT_TRUE(form->TrayIcon1->flashEnabled());
        EXPECT_FALSE(form->TrayIcon2->isVisible());
        EXPECT_TRUE(form->Timer2->isEnabled());
        EXPECT_TRUE(form->NumLED1(0).isVisible());
        EXPECT_TRUE(form->NumLED2->isVisible());
        EXPECT_TRUE(form->Picture3(1).isVisible());
        EXPECT_FALSE(form->Picture3(0).isVisible());
    });
    click(*form->Command2);
    EXPECT_TRUE(looked);
    EXPECT_FALSE(form->TrayIcon1->isVisible());
    EXPECT_FALSE(form->TrayIcon1->flashEnabled());
    EXPECT_TRUE(form->TrayIcon2->isVisible());
}

TEST_F(Scanning, ADiscWithoutFilesNeverUpdatesTheBars) {
    insert(folder(""));
    scan();
    EXPECT_EQ(form->caption(), "Discaro - Scan a new CD-ROM");
    EXPECT_EQ(count("directories"), 1);
}

TEST_F(Scanning, TheTotalsCantBeCancelled) {
    goToScanning();
    int looks = 0;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, form, [&] {
        if (!form->Picture4(1).isVisible())
            return;
        ++looks;
        EXPECT_FALSE(form->Command6->isEnabled());
        const bool countsDirectories = form->ProgressBar1->max() == 2;
        EXPECT_EQ(form->ProgressBar1->toolTip().isEmpty(), countsDirectories);
        form->close();
        QTest::keyClick(form, Qt::Key_Escape);
    });
    watch.start(0);
    click(*form->Command2);
    EXPECT_GT(looks, 0);
    EXPECT_TRUE(button(7).isEnabled());
    EXPECT_EQ(box.asked(), 0);
}

TEST_F(Scanning, FilesThatWereNotCountedShowAMinusBeforeTheNumberToo) {
    goToScanning();
    insert(manyFiles());
    form->ProgressBar1->setMax(100);
    click(*form->Command2);
    EXPECT_EQ(form->NumLED1(1).caption(), "-47-");
    form->Timer2->setEnabled(false);
}

TEST_F(Scanning, TheDirectoryInHandIsShownWithItsFiles) {
    goTo(2);
    EXPECT_EQ(form->Text6->text(), QString(QChar(letter)) + ":\\     (1 File(s))");
}

TEST_F(Scanning, TheClockCountsOnItsTicks) {
    goToScanning();
    EXPECT_EQ(form->Timer2->interval(), 1500);
    QString elapsed;
    QString remaining;
    duringScan([&] {
        emit form->Timer2->Tick();
        elapsed = form->NumLED2->caption();
        form->NumLED1(0).setCaption("0+");
        emit form->Timer2->Tick();
        remaining = form->NumLED3->caption();
    });
    click(*form->Command2);
    EXPECT_EQ(elapsed, "+00:00");
    EXPECT_EQ(remaining, "-00:00") << "before the first file";
}

TEST_F(Scanning, TheElapsedTimeIsShownFromTheStartOn) {
    goToScanning();
    QString atStart;
    duringScan([&] { atStart = form->NumLED2->caption(); });
    click(*form->Command2);
    EXPECT_EQ(atStart, "+00:00");
}

TEST_F(Scanning, WhileItRunsTheFocusIsOnCancelScanning) {
    goToScanning();
    QWidget* focus = nullptr;
    duringScan([&] { focus = form->focusWidget(); });
    click(*form->Command2);
    EXPECT_EQ(focus, form->Command6);
}

TEST_F(Scanning, ALateClickOnCancelDoesNotBeginAnotherScan) {
    scan();
    EXPECT_FALSE(form->Command5->geometry().intersects(form->Command6->geometry()));
}

TEST_F(Scanning, TheBarMovesWithTheTotalsInTwentyStepsAtLeast) {
    std::vector<MemoryNode> folders;
    for (int i = 0; i < 30; ++i)
        folders.push_back(folder("D" + std::to_string(i)));
    insert(folder("", folders));
    goToScanning();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(form));
    BarProbe probe(*form);
    click(*form->Command2);
    EXPECT_GE(probe.values.size(), 20U);
    EXPECT_EQ(*probe.values.rbegin(), 10000);
}

TEST_F(Scanning, EachCounterSaysWhatItCounts) {
    scan();
    const auto says = [](QWidget& counter) {
        return QAccessible::queryAccessibleInterface(&counter)->text(QAccessible::Name).toStdString();
    };
    EXPECT_EQ(says(form->NumLED1(0)), "Files done: 3+");
    EXPECT_EQ(says(form->NumLED1(1)), "Files to come: 0-");
    EXPECT_EQ(says(*form->NumLED2), "Elapsed Time: +00:00");
    EXPECT_EQ(says(*form->NumLED3), "Remaining Time: -00:00");
}

TEST_F(Scanning, TheFirstOfTwoClicksOnStartCancelsNothing) {
    goToScanning();
    duringScan([this] { QTest::mouseDClick(form->Command6, Qt::LeftButton); });
    click(*form->Command2);
    EXPECT_EQ(box.asked(), 0);
    EXPECT_TRUE(button(7).isEnabled());
}

TEST_F(Scanning, TheScreenFitsAtAnyFontSize) {
    for (const double factor : {1.0, 1.25, 1.5}) {
        const LargerFont font(factor);
        goToScanning();
        for (QWidget* late : {static_cast<QWidget*>(&form->NumLED1(0)), static_cast<QWidget*>(form->NumLED2),
                              static_cast<QWidget*>(form->Label9), static_cast<QWidget*>(form->Command6)})
            late->show();
        EXPECT_EQ(cutTexts(*form), std::vector<std::string>{}) << factor;
        form->Unload();
        form = nullptr;
    }
}

TEST_F(Scanning, BothTrayIconsLeaveWithTheWindow) {
    open();
    const QPointer<kit::TrayIcon> scanning = form->TrayIcon1;
    const QPointer<kit::TrayIcon> idle = form->TrayIcon2;
    scanning->setVisible(true);
    form->Unload();
    EXPECT_FALSE(scanning && scanning->isVisible());
    EXPECT_FALSE(idle && idle->isVisible());
}

TEST_F(Scanning, AScanThatIsUnderwayIsNotTakenForOneThatFailed) {
    goToScanning();
    duringScan([this] { emit form->Timer1->Tick(); });
    click(*form->Command2);
    EXPECT_EQ(box.asked(), 0);
    EXPECT_FALSE(form->Timer1->isEnabled());
}

TEST_F(Scanning, TheCountersGiveWayToTheirOtherSides) {
    scan();
    form->NumLED1(0).setFocus();
    emit form->NumLED1(0).Click();
    EXPECT_FALSE(form->NumLED1(0).isVisible());
    EXPECT_TRUE(form->NumLED1(1).isVisible());
    EXPECT_EQ(form->focusWidget(), &form->NumLED1(1));
    emit form->NumLED1(1).Click();
    EXPECT_TRUE(form->NumLED1(0).isVisible());
    emit form->NumLED2->Click();
    EXPECT_FALSE(form->NumLED2->isVisible());
    EXPECT_TRUE(form->NumLED3->isVisible());
    EXPECT_EQ(form->Label9->text(), "Remaining Time");
    emit form->NumLED3->Click();
    EXPECT_TRUE(form->NumLED2->isVisible());
    EXPECT_EQ(form->Label9->text(), "Elapsed Time");
}

TEST_F(Scanning, ACounterThatIsClickedLeavesTheFocusWhereItIs) {
    scan();
    ASSERT_EQ(form->focusWidget(), &button(7));
    for (kit::NumLed* counter : {&form->NumLED1(0), &form->NumLED1(1), form->NumLED2, form->NumLED3}) {
        QTest::mouseClick(counter, Qt::LeftButton);
        EXPECT_FALSE(counter->isVisible());
        EXPECT_EQ(form->focusWidget(), &button(7));
    }
}

TEST_F(Scanning, CancelAnsweredOkLeavesNothingAndShowsTheMenuWhateverReturnToSays) {
    insert(manyFiles());
    goToScanning();
    app::Module1::ReturnTo = "explore";
    box.expect(kCancelText, Buttons::OkCancel, Icon::Critical, "Cancel Scan", Answer::Ok);
    duringScan([this] { form->Command6->click(); });
    click(*form->Command2);
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
    EXPECT_FALSE(isUp("EXMain"));
    EXPECT_EQ(count("drive") + count("directories") + count("files"), 0);
    EXPECT_EQ(field("Master Table", "scanned cd-roms"), "0");
}

TEST_F(Scanning, CancelAnsweredCancelChangesNothing) {
    insert(manyFiles());
    goToScanning();
    box.expect(kCancelText, Buttons::OkCancel, Icon::Critical, "Cancel Scan", Answer::Cancel);
    duringScan([this] { form->Command6->click(); });
    click(*form->Command2);
    EXPECT_EQ(count("files"), 50);
    EXPECT_TRUE(button(7).isEnabled());
}

TEST_F(Scanning, ClosingTheFrameWhileItRunsActsAsTheCancelButton) {
    insert(manyFiles());
    goToScanning();
    box.expect(kCancelText, Buttons::OkCancel, Icon::Critical, "Cancel Scan", Answer::Ok);
    duringScan([this] { form->close(); });
    click(*form->Command2);
    EXPECT_TRUE(isUp("Switch"));
    EXPECT_EQ(count("files"), 0);
}

TEST_F(Scanning, AnErrorUnderCancelAnsweredOkStops) {
    auto& medium = insert(folder("", {file("BAD.TXT", "x"), file("B")}));
    open();
    form->Option5->click();
    goToScanning();
    medium.failOn(Asked::Facts, medium.calls(Asked::Facts) + 1);
    box.expect(kErrorText, Buttons::OkCancel, Icon::Critical, "Error during Scan", Answer::Ok);
    click(*form->Command2);
    EXPECT_TRUE(isUp("Switch"));
    EXPECT_EQ(count("drive"), 0);
}

TEST_F(Scanning, AnErrorUnderCancelAnsweredCancelGoesOn) {
    auto& medium = insert(folder("", {file("BAD.TXT", "x"), file("B")}));
    open();
    form->Option5->click();
    goToScanning();
    medium.failOn(Asked::Facts, medium.calls(Asked::Facts) + 1);
    box.expect(kErrorText, Buttons::OkCancel, Icon::Critical, "Error during Scan", Answer::Cancel);
    click(*form->Command2);
    EXPECT_EQ(count("drive"), 1);
    EXPECT_EQ(count("files"), 1);
}

TEST_F(Scanning, MoreFilesThanCountedAreRefusedByTheBarAndLogged) {
    insert(manyFiles());
    goToScanning();
    duringScan([this] { form->ProgressBar1->setMax(1); });
    click(*form->Command2);
    EXPECT_EQ(count("files"), 50);
    EXPECT_NE(field("drive", "Comments").find(" in File :- F"), std::string::npos);
}

TEST_F(Scanning, ADiscThatIsGoneAtTheStartIsToldAndTheScanCanBeStartedAgain) {
    auto& medium = insert(manyFiles());
    goToScanning();
    medium.vanishAfter(0);
    box.expect("There is no disc in the drive, or it cannot be read", Buttons::Ok, Icon::Exclamation, "Error");
    click(*form->Command2);
    EXPECT_FALSE(db::DBEngine::InTransaction());
    EXPECT_EQ(count("drive") + count("directories") + count("files"), 0);
    EXPECT_TRUE(form->Command2->isVisible() && form->Command2->isEnabled());
    EXPECT_FALSE(form->Command6->isVisible());
    EXPECT_TRUE(button(4).isEnabled());
    medium.vanishAfter(1000);
    click(*form->Command2);
    EXPECT_EQ(count("files"), 50);
}

TEST_F(Scanning, ADiscThatGoesInTheWalkIsToldAfterTheCommit) {
    auto& medium = insert(folder("", {folder("A", {file("1"), file("2")}), folder("B", {file("3")})}));
    goToScanning();
    duringScan([&medium] { medium.vanishAfter(0); });
    box.expectTitled("Error during Scan", Icon::Exclamation);
    box.atQuestion = [] { EXPECT_FALSE(db::DBEngine::InTransaction()); };
    click(*form->Command2);
    EXPECT_EQ(box.last().text, "The CD-ROM could not be read to its end. " + QString::number(count("files")) +
                                   " of the 3 files that were counted are in the catalogue. The "
                                   "errors are in the CD-ROM's comments.");
    EXPECT_EQ(count("drive"), 1);
    EXPECT_TRUE(button(7).isEnabled());
}

TEST_F(Scanning, AScanThatCannotBeSavedIsToldOverTheMenuWhenItsTransactionIsOver) {
    goToScanning();
    form->Data2.SetReadOnly(true);
    form->Data2.Refresh();
    box.expect("The scan could not be saved. The catalogue stands as it was before.\n\n"
               "The operation is not supported for this object: the recordset is a snapshot",
               Buttons::Ok, Icon::Critical, "Error during Scan");
    box.atQuestion = [this] {
        EXPECT_FALSE(db::DBEngine::InTransaction());
        EXPECT_TRUE(isUp("Switch"));
    };
    click(*form->Command2);
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_EQ(count("directories"), 0);
}

TEST_F(Scanning, FinishReturnsAndAnotherScanOpensAFreshWizard) {
    scan();
    click(*form->Command5);
    ASSERT_TRUE(isUp("Scanform"));
    form = qobject_cast<scanner::Scanform*>(app::Windows::Find("Scanform"));
    EXPECT_TRUE(form->Picture1->isVisible());
    EXPECT_EQ(form->caption(), "Discaro - Scan a new CD-ROM");
    box.expect("The CD-ROM named  'Disc'  has the same serial number as this CD-ROM. You may have scanned "
               "it once "
               "before. Press Cancel to terminate this scan or press OK to ignore this fact and continue.",
               Buttons::OkCancel, Icon::Exclamation, "Duplicate Serial Number");
    next();
    chooseTestDrive();
    typeInto(*form->Text2, "Disc again");
    next();
    next();
    next();
    click(button(3));
    click(*form->Command2);
    EXPECT_EQ(count("drive"), 2);
    click(button(7));
    EXPECT_TRUE(isUp("Switch"));
}

TEST_F(Scanning, ACatalogueThatAnotherProgramHasLockedIsToldBeforeAnythingHappens) {
    goToScanning();
    db::Connection::setLockWait(0);
    {
        RawDatabase other(app::Module1::cataloguePath());
        other.execute("BEGIN EXCLUSIVE");
        box.expectTitled("Error", Icon::Critical);
        click(*form->Command2);
    }
    EXPECT_TRUE(form->Command2->isVisible());
    EXPECT_FALSE(form->Command6->isVisible());
    EXPECT_EQ(count("drive"), 0);
}

TEST_F(Scanning, AnEnterKeyThatIsHeldFromTheStartOnAsksNothing) {
    goToScanning();
    duringScan([this] {
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(form->focusWidget(), &held);
    });
    click(*form->Command2);
    EXPECT_EQ(box.asked(), 0);
    EXPECT_TRUE(button(7).isEnabled());
}

TEST_F(Scanning, CancelOnTheScanningScreenClosesBeforeTheStart) {
    goToScanning();
    click(button(4));
    EXPECT_FALSE(isUp("Scanform"));
    EXPECT_TRUE(isUp("Switch"));
    EXPECT_EQ(count("drive"), 0);
}

TEST_F(Scanning, FinishReturnsToTheExplorerAndClosesTheCatalogue) {
    app::Module1::ReturnTo = "explore";
    scan();
    click(button(7));
    EXPECT_TRUE(isUp("EXMain"));
    for (db::DataSource* source : {&form->Data1, &form->Data2, &form->Data3, &form->Data4})
        EXPECT_FALSE(source->HasRecordset());
}

TEST_F(Scanning, AnotherScanKeepsTheWayBack) {
    app::Module1::ReturnTo = "explore";
    scan();
    click(*form->Command5);
    EXPECT_EQ(app::Module1::ReturnTo, "explore");
}

TEST_F(Scanning, AnUnfinishedScanIsToldOnceASecondAfterLoading) {
    {
        auto rows = db::DBEngine::OpenDatabase(app::Module1::cataloguePath())->OpenRecordset("master table");
        rows->Edit();
        (*rows)(catalogue::masterTable::kScanError) = "error";
        rows->Update();
    }
    open();
    EXPECT_EQ(form->Timer1->interval(), 1000);
    box.expect(kUnfinishedText, Buttons::Ok, Icon::Critical, "Error");
    emit form->Timer1->Tick();
    EXPECT_FALSE(form->Timer1->isEnabled());
}

TEST_F(Scanning, AFinishedScanIsNotMentioned) {
    open();
    emit form->Timer1->Tick();
    EXPECT_EQ(box.asked(), 0);
    EXPECT_FALSE(form->Timer1->isEnabled());
}

TEST_F(Scanning, ACatalogueWithoutItsRowOfTotalsHasNoUnfinishedScan) {
    open();
    RawDatabase(app::Module1::cataloguePath()).execute("DELETE FROM \"Master Table\"");
    form->Data1.Refresh();
    ASSERT_TRUE(form->Data1.Recordset().Eof());
    EXPECT_NO_THROW(asHandler([this] { emit form->Timer1->Tick(); }));
    EXPECT_EQ(box.asked(), 0);
    EXPECT_FALSE(form->Timer1->isEnabled());
}

TEST_F(Scanning, TheTrayNotificationsRestoreAndMinimise) {
    open();
    emit form->TrayIcon2->Minimise();
    EXPECT_EQ(form->state(), kit::Form::State::Minimised);
    emit form->TrayIcon2->Restore();
    EXPECT_EQ(form->state(), kit::Form::State::Normal);
    EXPECT_FALSE(form->TrayIcon2->flashEnabled());
    emit form->TrayIcon1->Minimise();
    EXPECT_EQ(form->state(), kit::Form::State::Minimised);
    emit form->TrayIcon1->Restore();
    EXPECT_EQ(form->state(), kit::Form::State::Normal);
    EXPECT_TRUE(form->isVisible());
}

// ---- Another program takes the catalogue away, or puts another in its place, while the wizard is up

namespace {

namespace fs = std::filesystem;

enum class Deed { Replaced, Removed, Overwritten };

std::ostream& operator<<(std::ostream& out, Deed deed) {
    static constexpr const char* kNames[] = {"Replaced", "Removed", "Overwritten"};
    return out << kNames[static_cast<int>(deed)];
}

class OtherCatalogue : public Scanning, public testing::WithParamInterface<Deed> {
protected:
    OtherCatalogue() {
        for (int64_t number = 5; number < 9; ++number)
            addDisc(number, std::to_string(number).c_str(), "none");
        catalogue::createEmptyCatalogue(other());
        RawDatabase(other()).execute("INSERT INTO Drive(\"id number\") VALUES (77)");
        goToScanning();
    }

    static fs::path path() { return app::Module1::cataloguePath(); }
    static fs::path other() { return app::Module1::ApplicationPath / "other.mde"; }

    void perform() {
        if (GetParam() == Deed::Replaced)
            fs::rename(other(), path());
        else if (GetParam() == Deed::Removed)
            fs::remove(path());
        else
            fs::copy_file(other(), path(), fs::copy_options::overwrite_existing);
        m_left = readFile(path());
        m_done = true;
    }

    // The box tells it, and what the other program left is as it left it.
    void expectTold() {
        EXPECT_TRUE(m_done);
        EXPECT_TRUE(GetParam() == Deed::Removed ||
                    box.last().text.contains("The catalogue file was replaced, removed or changed "
                                             "by another program"))
            << box.last().text.toStdString();
        EXPECT_EQ(fs::exists(path()), GetParam() != Deed::Removed);
        EXPECT_TRUE(readFile(path()) == m_left);
        EXPECT_FALSE(fs::exists(path().string() + "-journal"));
    }

    // Without any catalogue there is no main menu to go back to, and the program ends by a report.
    void scanInVain() {
        const bool removed = GetParam() == Deed::Removed;
        box.expectTitled("Error during Scan", Icon::Critical);
        if (removed)
            box.expectTitled(QCoreApplication::applicationName(), Icon::Critical);
        EXPECT_EQ(exitCode([this] { emit form->Command2->Click(); }), removed ? 1 : 0);
        EXPECT_FALSE(isUp("Scanform"));
        EXPECT_EQ(isUp("Switch"), !removed);
        EXPECT_TRUE(
            box.last().text.startsWith(removed ? "Run-time error 3410:\n\nThe catalogue file was not found"
                                               : "The scan could not be saved. The catalogue stands as it was before."))
            << box.last().text.toStdString();
        expectTold();
    }
    // What a step ends the program with; 0 when it doesn't.
    static int exitCode(const std::function<void()>& step) {
        const ThrowingEnd end;
        try {
            asHandler(step);
        } catch (const ProgramEnded& ended) {
            return ended.exitCode;
        }
        return 0;
    }

    std::string m_left;
    bool m_done = false;
};

} // namespace

TEST_P(OtherCatalogue, AtTheStartIsToldAndNothingIsScanned) {
    perform();
    box.expectTitled("Error", Icon::Critical);
    click(*form->Command2);
    EXPECT_TRUE(form->Command2->isVisible());
    expectTold();
}

TEST_P(OtherCatalogue, InTheMiddleIsTold) {
    insert(manyFiles());
    duringScan([this] { perform(); });
    scanInVain();
}

TEST_P(OtherCatalogue, InTheTotalsIsTold) {
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, form, [this] {
        if (!m_done && form->Picture4(1).isVisible())
            perform();
    });
    watch.start(0);
    scanInVain();
}

TEST_P(OtherCatalogue, IsTheOneThatTheNextWizardOpens) {
    perform();
    form->Unload();
    app::Module1::CatalogueDb.reset();
    if (GetParam() == Deed::Removed)
        catalogue::createEmptyCatalogue(path());
    open();
    EXPECT_EQ(count("drive"), GetParam() == Deed::Removed ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(All, OtherCatalogue, testing::Values(Deed::Replaced, Deed::Removed, Deed::Overwritten),
                         testing::PrintToStringParamName());
