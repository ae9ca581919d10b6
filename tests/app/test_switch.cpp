#include "app/AppTest.h"
#include "app/Switch.h"
#include "base/RuntimeError.h"
#include "db/DBEngine.h"
#include "kit/common/Colour.h"
#include "kit/form/TrayIcon.h"
#include "kit/program/Yield.h"
#include "support/windows/GoldenForm.h"

#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QDropEvent>

#include <cmath>
#include <filesystem>
#include <numbers>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
namespace Windows = discaro::app::Windows;
namespace Module1 = discaro::app::Module1;

namespace {

constexpr int kResting = 16744576;
constexpr int kHover = 192;

class Switch : public AppTest {
protected:
    // Shows the menu and waits until its timer has looked for discs.
    app::Switch& open() {
        Windows::Show("Switch");
        auto& menu = window();
        EXPECT_TRUE(waitFor([&] { return !menu.Timer1->isEnabled(); }));
        return menu;
    }

    app::Switch& openWithDisc() {
        addDisc();
        return open();
    }

    static void drop(app::Switch& menu, const QList<QUrl>& files) {
        QMimeData data;
        data.setUrls(files);
        QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&menu, &enter);
        EXPECT_TRUE(enter.isAccepted());
        QDropEvent event(QPointF(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&menu, &event);
    }

    static app::Switch& window() { return dynamic_cast<app::Switch&>(*Windows::Find("Switch")); }

    static int colour(app::Switch& menu, int index) { return kit::numberOf(menu.Label1(index).foreColour()); }
};

class CountedPaints : public QObject {
public:
    explicit CountedPaints(QWidget& widget) { widget.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
};

// The least contrast of a colour with any pixel of the face at the place of an entry.
double leastContrast(app::Switch& menu, int index, const QColor& text) {
    const QImage face = menu.Image1->grab().toImage();
    const QRect place = menu.Label1(index).geometry();
    double least = 21.0;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            least = std::min(least, kit::contrast(text, face.pixelColor(x, y)));
    return least;
}

} // namespace

// ---- The window

TEST_F(Switch, MatchesItsGoldenFile) {
    expectGolden(openWithDisc(), "app");
}

TEST_F(Switch, IsABorderlessCircleOf480Pixels) {
    auto& menu = open();
    EXPECT_EQ(menu.size(), QSize(480, 480));
    EXPECT_TRUE(menu.windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(menu.mask().boundingRect(), QRect(2, 2, 477, 477));
    EXPECT_FALSE(menu.mask().contains(QPoint(12, 12)));
    EXPECT_TRUE(menu.mask().contains(QPoint(240, 240)));
}

TEST_F(Switch, ItsCircleGrowsWithTheFont) {
    const LargerFont larger(1.5);
    auto& menu = open();
    EXPECT_EQ(menu.size(), QSize(menu.scaled(480), menu.scaled(480)));
    EXPECT_EQ(menu.mask().boundingRect().right(), menu.scaled(479) - 1);
    EXPECT_THAT(cutTexts(menu), IsEmpty());
}

TEST_F(Switch, EveryControlLiesInsideTheCircle) {
    auto& menu = open();
    for (const auto& control : menu.controls()) {
        const auto* widget = qobject_cast<const QWidget*>(control.object.data());
        if (!widget || !widget->isVisible() || widget == menu.Image1)
            continue;
        const QRect place(widget->mapTo(&menu, QPoint(0, 0)), widget->size());
        for (const QPoint& corner : {place.topLeft(), place.topRight(), place.bottomLeft(), place.bottomRight()})
            EXPECT_TRUE(menu.mask().contains(corner)) << widget->objectName().toStdString();
    }
}

TEST_F(Switch, NoTextIsCut) {
    EXPECT_THAT(cutTexts(open()), IsEmpty());
}

TEST_F(Switch, EveryColourReadsWellWhereItStands) {
    auto& menu = openWithDisc();
    for (const auto& [index, label] : menu.Label1) {
        EXPECT_GE(leastContrast(menu, index, label->foreColour()), 4.5) << index;
        const QColor dimmed = label->palette().color(QPalette::Disabled, QPalette::WindowText);
        EXPECT_GE(leastContrast(menu, index, dimmed), 3.0) << index;
        EXPECT_LT(leastContrast(menu, index, dimmed), leastContrast(menu, index, label->foreColour())) << index;
    }
    hover(menu.Label1(3));
    EXPECT_GE(kit::contrast(menu.Label1(3).foreColour(), menu.Label1(3).ground()), 4.5);
}

// A shape has hard edges: what stands there must be close to what is usually behind it.
TEST_F(Switch, ItsEdgeIsPaleAllAround) {
    auto& menu = open();
    const QImage face = menu.Image1->grab().toImage();
    for (int degree = 0; degree < 360; ++degree) {
        const double angle = degree * std::numbers::pi / 180;
        double radius = 241;
        QPoint edge;
        do {
            radius -= 0.25;
            edge = QPoint(static_cast<int>(240.5 + radius * std::cos(angle)),
                          static_cast<int>(240.5 + radius * std::sin(angle)));
        } while (!menu.mask().contains(edge));
        EXPECT_LT(kit::contrast(face.pixelColor(edge), Qt::white), 4.0) << degree;
    }
}

TEST_F(Switch, ItsMarqueeScrollsTheNameOfTheProgram) {
    auto& menu = open();
    EXPECT_EQ(menu.AXMarquee1->text(), "Tavo         Discaro");
    EXPECT_TRUE(menu.AXMarquee1->isMoving());
}

TEST_F(Switch, TheMinimiseButtonMinimises) {
    auto& menu = open();
    click(*menu.Command1);
    EXPECT_EQ(menu.state(), kit::Form::State::Minimised);
}

// ---- Which entries are offered

TEST_F(Switch, AnEmptyCatalogueOffersOnlyScanWorkshopAboutAndExit) {
    auto& menu = open();
    for (const auto& [index, label] : menu.Label1) {
        const bool offered = index == 0 || index == 4 || index == 5 || index == 6;
        EXPECT_EQ(label->isEnabled(), offered) << index;
    }
}

TEST_F(Switch, ACatalogueWithADiscOffersEverything) {
    auto& menu = openWithDisc();
    for (const auto& [index, label] : menu.Label1)
        EXPECT_TRUE(label->isEnabled()) << index;
}

TEST_F(Switch, AClickOnADisabledEntryDoesNothing) {
    auto& menu = open();
    for (const int index : {1, 2, 3, 7}) {
        QTest::mouseClick(&menu.Label1(index), Qt::LeftButton);
        QTest::keyClick(&menu.Label1(index), Qt::Key_Return);
    }
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(Windows::IsLoaded("Switch"));
    EXPECT_EQ(Module1::ReturnTo, "");
}

TEST_F(Switch, AnEntryWhoseWindowIsNotPartOfTheProgramIsDisabledFromTheStart) {
    addDisc();
    Windows::Clear();
    Windows::Register("Switch", [] { return new app::Switch; });
    Windows::Register("Scanform", [this] { return new StubForm("Scanform", log); });
    Windows::Load("Switch");
    for (const auto& [index, label] : window().Label1)
        EXPECT_EQ(label->isEnabled(), index == 0 || index == 6) << index;
}

TEST_F(Switch, TheEntriesComeBackAfterTheFirstScan) {
    auto& menu = open();
    EXPECT_FALSE(menu.Label1(2).isEnabled());
    menu.Unload();
    EXPECT_TRUE(openWithDisc().Label1(2).isEnabled());
}

TEST_F(Switch, TheEntriesGoAwayAfterTheLastDiscHasBeenDeleted) {
    EXPECT_TRUE(openWithDisc().Label1(2).isEnabled());
    Windows::Unload("Switch");
    db::DBEngine::OpenDatabase(Module1::cataloguePath())->Execute("delete from drive");
    EXPECT_FALSE(open().Label1(2).isEnabled());
}

TEST_F(Switch, TheWorkshopOpensOverAnEmptyCatalogueToo) {
    click(open().Label1(4));
    EXPECT_THAT(log, ElementsAre("Workshop load"));
}

TEST_F(Switch, AnIndexThatNoEntryHasDoesNothing) {
    auto& menu = open();
    for (const int index : {-1, 8, 100})
        menu.Label1_Click(index);
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(Windows::IsLoaded("Switch"));
}

TEST_F(Switch, AFailingRecordCountLeavesTheMenuFullyEnabled) {
    addDisc();
    Windows::Show("Switch");
    auto& menu = window();
    menu.Data1.Close();
    EXPECT_TRUE(waitFor([&] { return !menu.Timer1->isEnabled(); }));
    for (const auto& [index, label] : menu.Label1)
        EXPECT_TRUE(label->isEnabled()) << index;
}

TEST_F(Switch, AMissingCatalogueIsAnErrorThatNobodyTakes) {
    std::filesystem::remove(Module1::cataloguePath());
    EXPECT_THROW(Windows::Show("Switch"), base::RuntimeError);
    EXPECT_FALSE(Windows::IsLoaded("Switch"));
}

TEST_F(Switch, ClosesTheCatalogueWhenItIsUnloaded) {
    auto& menu = open();
    EXPECT_TRUE(menu.Data1.HasRecordset());
    menu.Unload();
    EXPECT_FALSE(menu.Data1.HasRecordset());
}

// ---- The entries

TEST_F(Switch, EachEntryHandsOverToItsWindow) {
    const std::pair<int, const char*> windows[] = {{0, "Scanform"}, {1, "DeleteCD"}, {2, "EXMain"},
                                                   {3, "Search"},   {4, "Workshop"}, {7, "Programs"}};
    addDisc();
    for (const auto& [index, name] : windows) {
        Module1::ReturnTo.clear();
        log.clear();
        click(open().Label1(index));
        EXPECT_THAT(log, ElementsAre(name + std::string(" load")));
        EXPECT_TRUE(Windows::Find(name)->isVisible()) << name;
        EXPECT_FALSE(Windows::IsLoaded("Switch")) << name;
        EXPECT_FALSE(Windows::IsLoaded("Loading")) << name;
        EXPECT_EQ(Module1::ReturnTo, "switch") << name;
        Windows::Unload(name);
    }
}

TEST_F(Switch, ScanClearsTheMarkOfACancelledScan) {
    Module1::ScanCancelled = 1;
    int atLoad = -1;
    stub("Scanform", [&](kit::Form&) { atLoad = Module1::ScanCancelled; });
    click(open().Label1(0));
    EXPECT_EQ(atLoad, 0);
}

TEST_F(Switch, ExploreForgetsAnOldJump) {
    Module1::JumpDisc = "12";
    std::string atLoad = "none";
    stub("EXMain", [&](kit::Form&) { atLoad = Module1::JumpDisc; });
    click(openWithDisc().Label1(2));
    EXPECT_EQ(atLoad, "");
}

TEST_F(Switch, AboutIsModalAndLeavesTheMenuLoaded) {
    auto& menu = open();
    stub("About", [](kit::Form& about) {
        QTimer::singleShot(0, &about, [&about] {
            EXPECT_TRUE(about.isModal());
            about.Unload();
        });
    });
    click(menu.Label1(5));
    EXPECT_THAT(log, ElementsAre("About load", "About unload"));
    EXPECT_EQ(Windows::Find("Switch"), &menu);
    EXPECT_TRUE(menu.isVisible());
    EXPECT_FALSE(Windows::IsLoaded("Loading"));
    EXPECT_EQ(Module1::ReturnTo, "switch");
}

TEST_F(Switch, ExitEndsTheProgramAtOnceWithoutUnloading) {
    const ThrowingEnd end;
    Windows::Show("Search");
    log.clear();
    auto& menu = open();
    try {
        asHandler([&] { emit menu.Label1(6).Click(); });
        ADD_FAILURE() << "the program goes on";
    } catch (const ProgramEnded& ended) {
        EXPECT_EQ(ended.exitCode, 0);
    }
    EXPECT_THAT(log, IsEmpty());
    EXPECT_TRUE(Windows::IsLoaded("Switch"));
}

TEST_F(Switch, AClickOnExitEndsTheProcess) {
    EXPECT_EXIT(QTest::mouseClick(&open().Label1(6), Qt::LeftButton), ::testing::ExitedWithCode(0), "");
}

// ---- Greyed entries, and what is dropped

TEST_F(Switch, AGreyedEntryTellsWhy) {
    auto& empty = open();
    for (const int index : {1, 2, 3, 7})
        EXPECT_EQ(empty.Label1(index).toolTip(), "There is no disc in the catalogue yet. Scan one first.");
    EXPECT_EQ(empty.Label1(0).toolTip(), "");
    empty.Unload();
    auto& full = openWithDisc();
    for (const auto& [index, label] : full.Label1)
        EXPECT_EQ(label->toolTip(), "") << index;
}

TEST_F(Switch, AnEntryWhoseWindowIsMissingTellsThatWhateverTheCatalogueHolds) {
    Windows::Clear();
    Windows::Register("Switch", [] { return new app::Switch; });
    auto& menu = open();
    EXPECT_EQ(menu.Label1(3).toolTip(), "This version of Discaro does not have this window yet.");
    EXPECT_EQ(menu.Label1(6).toolTip(), "");
}

TEST_F(Switch, ADroppedImageOpensTheWizardWithIt) {
    auto& menu = open();
    Module1::ScanCancelled = 1;
    drop(menu, {QUrl("file:///discs/a.iso"), QUrl("file:///discs/b.iso")});
    EXPECT_TRUE(Windows::IsLoaded("Switch")) << "whoever drags is not held up";
    ASSERT_TRUE(waitFor([] { return Windows::IsLoaded("Scanform"); }));
    EXPECT_FALSE(Windows::IsLoaded("Switch"));
    EXPECT_EQ(Module1::ScanCancelled, 0);
    EXPECT_THAT(std::exchange(Module1::DroppedDiscs, {}), ElementsAre("/discs/a.iso", "/discs/b.iso"));
}

TEST_F(Switch, ADroppedImageIsForgottenWhenTheMenuIsLeftByAnEntryBeforeItIsTaken) {
    auto& menu = openWithDisc();
    drop(menu, {QUrl("file:///discs/a.iso")});
    menu.Label1_Click(2);
    EXPECT_TRUE(Windows::IsLoaded("EXMain"));
    kit::yield();
    EXPECT_FALSE(Windows::IsLoaded("Scanform"));
    EXPECT_THAT(std::exchange(Module1::DroppedDiscs, {}), IsEmpty());
}

TEST_F(Switch, WhatIsNoFileIsNotTaken) {
    auto& menu = open();
    QMimeData data;
    data.setUrls({QUrl("http://localhost/disc.iso")});
    QDragEnterEvent enter(QPoint(50, 50), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&menu, &enter);
    EXPECT_FALSE(enter.isAccepted());
}

TEST_F(Switch, EscapeLeavesItUp) {
    auto& menu = open();
    QTest::keyClick(&menu, Qt::Key_Escape);
    EXPECT_TRUE(menu.isVisible());
}

// ---- Hovering

TEST_F(Switch, EntriesRestInTheirColourUntilOneIsHovered) {
    auto& menu = openWithDisc();
    for (const auto& [index, label] : menu.Label1)
        EXPECT_EQ(colour(menu, index), kResting) << index;
    hover(menu.Label1(3));
    EXPECT_EQ(colour(menu, 3), kHover);
    EXPECT_EQ(colour(menu, 2), kResting);
}

TEST_F(Switch, HoveringAnotherEntryGivesTheFirstItsColourBack) {
    auto& menu = openWithDisc();
    hover(menu.Label1(3));
    hover(menu.Label1(7));
    EXPECT_EQ(colour(menu, 3), kResting);
    EXPECT_EQ(colour(menu, 7), kHover);
    EXPECT_FALSE(menu.Label1(3).ground().isValid());
}

TEST_F(Switch, TheLastHoveredEntryStaysRedWhenTheMouseLeavesIt) {
    auto& menu = openWithDisc();
    hover(menu.Label1(3));
    hover(*menu.Image1);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&menu.Label1(3), &leave);
    EXPECT_EQ(colour(menu, 3), kHover);
}

TEST_F(Switch, MovingWithinOneEntryRepaintsNothing) {
    auto& menu = openWithDisc();
    hover(menu.Label1(3));
    QCoreApplication::processEvents();
    const CountedPaints paints(menu.Label1(3));
    for (int more = 0; more < 5; ++more)
        hover(menu.Label1(3));
    QCoreApplication::processEvents();
    EXPECT_EQ(paints.count, 0);
}

TEST_F(Switch, TheHoverColourIsThatOfTheHiddenLabel) {
    auto& menu = openWithDisc();
    EXPECT_FALSE(menu.Label2->isVisible());
    EXPECT_EQ(menu.Label2->text(), "Label2");
    menu.Label2->setForeColour(QColor(1, 2, 3));
    hover(menu.Label1(0));
    EXPECT_EQ(menu.Label1(0).foreColour(), QColor(1, 2, 3));
}

TEST_F(Switch, ADisabledEntryIsNotHovered) {
    auto& menu = open();
    hover(menu.Label1(3));
    EXPECT_EQ(colour(menu, 3), kResting);
}

// ---- Dragging

TEST_F(Switch, IsDraggedByItsFaceWithAnyButton) {
    for (const auto button : {Qt::LeftButton, Qt::RightButton}) {
        auto& menu = open();
        const QPoint before = menu.pos();
        QTest::mousePress(menu.Image1, button, {}, QPoint(30, 200));
        QTest::mouseMove(menu.Image1, QPoint(37, 190));
        EXPECT_EQ(menu.pos(), before + QPoint(7, -10));
        QTest::mouseRelease(menu.Image1, button, {}, QPoint(30, 200));
        menu.Unload();
    }
}

TEST_F(Switch, FollowsTheMouseAlsoWhenItsMovesLagBehind) {
    auto& menu = open();
    const QPoint start = menu.pos();
    QTest::mousePress(menu.Image1, Qt::LeftButton, {}, QPoint(30, 200));
    for (const QPoint& moved : {QPoint(7, -10), QPoint(30, -40), QPoint(90, -60)}) {
        // Told in places of the window as it stood at first, as a busy screen does.
        QMouseEvent event(QEvent::MouseMove, QPoint(30, 200) + moved, start + QPoint(30, 200) + moved, Qt::NoButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(menu.Image1, &event);
        EXPECT_EQ(menu.pos(), start + moved);
    }
    QTest::mouseRelease(menu.Image1, Qt::LeftButton, {}, QPoint(30, 200));
}

TEST_F(Switch, ComesBackWhereItWas) {
    auto& menu = openWithDisc();
    menu.move(menu.pos() + QPoint(41, -23));
    const QPoint place = menu.pos();
    click(menu.Label1(2));
    EXPECT_FALSE(Windows::IsLoaded("Switch"));
    Windows::Unload("EXMain");
    EXPECT_EQ(open().pos(), place);
}

TEST_F(Switch, AMoveWithoutAPressDragsNothing) {
    auto& menu = open();
    const QPoint before = menu.pos();
    QTest::mouseMove(menu.Image1, QPoint(37, 190));
    EXPECT_EQ(menu.pos(), before);
    QTest::mousePress(menu.Image1, Qt::LeftButton, {}, QPoint(30, 200));
    QTest::mouseRelease(menu.Image1, Qt::LeftButton, {}, QPoint(30, 200));
    QTest::mouseMove(menu.Image1, QPoint(60, 260));
    EXPECT_EQ(menu.pos(), before);
}

// ---- The keyboard

TEST_F(Switch, TheTabKeyGoesThroughTheEntriesAsTheyStand) {
    EXPECT_THAT(tabOrder(openWithDisc()), ElementsAre("Label1(0)", "Label1(1)", "Label1(2)", "Label1(3)", "Label1(7)",
                                                      "Label1(4)", "Label1(5)", "Label1(6)", "Command1"));
}

TEST_F(Switch, ArrowKeysMoveAndPassDisabledEntries) {
    auto& menu = open();
    menu.activateWindow();
    menu.Label1(0).setFocus();
    ASSERT_TRUE(waitFor([&] { return menu.Label1(0).hasFocus(); }));
    QTest::keyClick(&menu.Label1(0), Qt::Key_Down);
    EXPECT_TRUE(menu.Label1(4).hasFocus());
    QTest::keyClick(&menu.Label1(4), Qt::Key_Right);
    EXPECT_TRUE(menu.Label1(5).hasFocus());
    QTest::keyClick(&menu.Label1(5), Qt::Key_Up);
    QTest::keyClick(&menu.Label1(4), Qt::Key_Left);
    EXPECT_TRUE(menu.Label1(0).hasFocus());
}

TEST_F(Switch, EnterChoosesTheEntryWithTheFocus) {
    auto& menu = openWithDisc();
    QTest::keyClick(&menu.Label1(3), Qt::Key_Return);
    EXPECT_THAT(log, ElementsAre("Search load"));
}

TEST_F(Switch, EverythingThatTheKeyboardReachesCanBeSaid) {
    EXPECT_THAT(speechless(openWithDisc()), IsEmpty());
}

// ---- The tray icon

TEST_F(Switch, ItsTrayIconFlashesForAsLongAsTheMenuIsUp) {
    auto& icon = *open().TrayIcon1;
    EXPECT_EQ(icon.toolTipText(), "Discaro");
    EXPECT_TRUE(icon.isEnabled());
    EXPECT_TRUE(icon.trueClick());
    EXPECT_TRUE(icon.isVisible());
    EXPECT_TRUE(icon.flashEnabled());
    EXPECT_FALSE(icon.flashSound());
    EXPECT_EQ(icon.flashInterval(), 1000);
}

TEST_F(Switch, TheTrayIconMinimisesAndRestoresAndGoesOnFlashing) {
    auto& menu = open();
    menu.TrayIcon1->activate(QSystemTrayIcon::MiddleClick);
    EXPECT_EQ(menu.state(), kit::Form::State::Minimised);
    EXPECT_TRUE(menu.TrayIcon1->flashEnabled());
    menu.TrayIcon1->activate(QSystemTrayIcon::Trigger);
    EXPECT_EQ(menu.state(), kit::Form::State::Normal);
    EXPECT_TRUE(menu.isVisible());
    EXPECT_TRUE(menu.TrayIcon1->flashEnabled());
}
