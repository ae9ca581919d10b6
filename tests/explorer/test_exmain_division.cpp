#include "app/Windows.h"
#include "explorer/ExplorerRig.h"
#include "kit/common/UserSettings.h"
#include "kit/program/Ground.h"
#include "kit/program/Yield.h"

#include <QtGui/QScreen>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QTreeView>

namespace discaro::test {

using explorer::EXMain;
using testing::IsEmpty;

namespace {

// The explorer with more room than it has at first, and the handle between tree and listing.
class ExplorerDivision : public ExplorerTest {
protected:
    static QSettings settings() { return kit::userSettings(QStringLiteral("Software\\Quorlen\\Discaro")); }
    static void enlarge(EXMain& window, int across, int down) {
        window.resize(window.firstSize() + QSize(across, down));
        kit::yield();
    }
    // By the mouse, from the middle of the handle.
    static void drag(EXMain& window, int by) {
        kit::Divider& handle = *window.Divider1;
        const QPoint grip = handle.rect().center();
        QTest::mousePress(&handle, Qt::LeftButton, {}, grip);
        const QPoint end = grip + QPoint(by, 0);
        QMouseEvent move(QEvent::MouseMove, end, handle.mapToGlobal(end), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&handle, &move);
        QTest::mouseRelease(&handle, Qt::LeftButton, {}, end);
        kit::yield();
    }
    // The controls that stand elsewhere than the form table says.
    static std::vector<std::string> movedControls(const EXMain& window) {
        std::vector<std::string> moved;
        for (const auto& control : window.controls()) {
            const auto* widget = qobject_cast<QWidget*>(control.object.data());
            // The menu bar chooses its own height, and the handle is not seen.
            if (widget && widget != window.MenuBar1 && widget != window.Divider1 &&
                widget->geometry() != window.tablePlace(*widget))
                moved.push_back(widget->objectName().toStdString());
        }
        return moved;
    }
    static int rightEnd(const QWidget* widget) { return widget->geometry().right() + 1; }
    static int foot(const QWidget* widget) { return widget->geometry().bottom() + 1; }

    void leave(EXMain& window) {
        window.RunCommand("exit");
        app::Windows::Unload("Switch");
        kit::runGroundActions();
    }

    // Tree, handle and right side stand side by side and fill the window.
    static void expectFilled(EXMain& window) {
        const QSize more = window.size() - window.firstSize();
        const auto firstEnd = [&window](const QWidget* widget) {
            const QRect place = window.tablePlace(*widget);
            return place.bottomRight() + QPoint(1, 1);
        };
        for (const QWidget* each : {window.lvwdb, window.DriveInfo, window.Dirinfo}) {
            EXPECT_EQ(each->x(), rightEnd(window.Divider1));
            EXPECT_EQ(rightEnd(each), firstEnd(each).x() + more.width());
            EXPECT_EQ(foot(each), firstEnd(each).y() + more.height());
        }
        EXPECT_EQ(window.tvwdb->x(), 0);
        EXPECT_EQ(rightEnd(window.tvwdb), window.Divider1->x());
        EXPECT_EQ(foot(window.tvwdb), firstEnd(window.tvwdb).y() + more.height());
        EXPECT_EQ(window.Label1->width(), window.tvwdb->width());
        EXPECT_EQ(rightEnd(window.Label2), firstEnd(window.Label2).x() + more.width());
        EXPECT_EQ(rightEnd(window.Combo1), firstEnd(window.Combo1).x() + more.width());
        EXPECT_EQ(window.Label3->x(), window.tablePlace(*window.Label3).x() + more.width());
        EXPECT_EQ(window.StatusBar1->width(), window.width());
        EXPECT_EQ(foot(window.StatusBar1), window.ClientArea->height());
        EXPECT_EQ(window.ClientArea->width(), window.width());
        EXPECT_EQ(foot(window.ClientArea), window.height());
        EXPECT_EQ(window.MenuBar1->width(), window.width());
        EXPECT_EQ(window.Picture1->width(), window.width());
    }
};

} // namespace

TEST_F(ExplorerDivision, AFirstStartHasEveryControlInItsPlace) {
    EXMain& window = rig.open();
    EXPECT_EQ(window.size(), QSize(620, 454));
    EXPECT_THAT(movedControls(window), IsEmpty());
    EXPECT_FALSE(window.Divider1->isVisible());
    EXPECT_TRUE(window.windowFlags() & Qt::WindowMaximizeButtonHint);
}

TEST_F(ExplorerDivision, MoreRoomGoesToWhatCanUseIt) {
    for (const double scale : {1.0, 1.5}) {
        const LargerFont larger(scale);
        EXMain& window = rig.open();
        enlarge(window, 331, 157);
        EXPECT_TRUE(window.Divider1->isVisible());
        EXPECT_GT(window.tvwdb->width(), window.tablePlace(*window.tvwdb).width());
        expectFilled(window);
        EXPECT_THAT(cutTexts(window), IsEmpty());
        leave(window);
    }
}

TEST_F(ExplorerDivision, TheProgressBarsPanelTakesTheRoomOfTheStatusBar) {
    EXMain& window = rig.open();
    enlarge(window, 200, 0);
    const QRect panel = window.StatusBar1->panelPlace(3);
    EXPECT_EQ(panel.right() + 1, window.StatusBar1->width());
    EXPECT_EQ(window.prgload->geometry(), QRect(panel.left() + 3, 3, panel.width() - 6, panel.height() - 3));
    EXPECT_FALSE(window.StatusBar1->isAutoSize(3));
}

TEST_F(ExplorerDivision, TheValuesOfAPaneTakeItsRoom) {
    EXMain& window = rig.open();
    const auto& report = static_cast<QTreeView&>(window.DriveInfo->shown());
    enlarge(window, 400, 0);
    EXPECT_EQ(report.header()->length(), report.viewport()->width());
}

TEST_F(ExplorerDivision, RoomBesideTheListingsColumnsGoesToTheNames) {
    EXMain& window = rig.open();
    window.RunCommand("file view");
    const auto& report = static_cast<QTreeView&>(window.lvwdb->shown());
    const auto widths = [&report] {
        std::vector<int> all;
        for (int section = 0; section < report.header()->count(); ++section)
            all.push_back(report.columnWidth(section));
        return all;
    };
    EXPECT_THAT(widths(), testing::Each(169)) << "at the first size";
    enlarge(window, 300, 0);
    EXPECT_THAT(widths(), testing::Each(169)) << "more of the columns are seen first";
    enlarge(window, 1200, 0);
    EXPECT_EQ(report.header()->length(), report.viewport()->width());
    EXPECT_GT(report.columnWidth(0), 169);
    window.RunCommand("list view");
    enlarge(window, 1100, 0);
    window.RunCommand("report view");
    EXPECT_EQ(report.header()->length(), report.viewport()->width());
    enlarge(window, 0, 0);
    EXPECT_THAT(widths(), testing::Each(169));
}

TEST_F(ExplorerDivision, TheHandleDividesTreeAndListing) {
    EXMain& window = rig.open();
    enlarge(window, 300, 100);
    const int before = window.tvwdb->width();
    drag(window, 60);
    EXPECT_EQ(window.tvwdb->width(), before + 60);
    expectFilled(window);
    enlarge(window, 400, 100);
    EXPECT_EQ(window.tvwdb->width(), before + 60) << "the user's own width";
    emit window.Divider1->DblClick();
    EXPECT_EQ(window.tvwdb->width(), 152 * 1020 / 620) << "its share again";
}

TEST_F(ExplorerDivision, KeysMoveTheHandleBetweenItsLimits) {
    EXMain& window = rig.open();
    enlarge(window, 300, 100);
    window.RunCommand("file view");
    window.lvwdb->setFocus();
    QTest::keyClick(&window.lvwdb->shown(), Qt::Key_Tab);
    ASSERT_EQ(window.focusWidget(), window.Divider1) << "behind the listing";
    const int before = window.tvwdb->width();
    QTest::keyClick(window.Divider1, Qt::Key_Right);
    const int step = window.tvwdb->width() - before;
    EXPECT_GT(step, 0);
    for (int times = 0; times < 2; ++times)
        QTest::keyClick(window.Divider1, Qt::Key_Left);
    EXPECT_EQ(window.tvwdb->width(), before - step);
    expectFilled(window);
    QTest::keyClick(window.Divider1, Qt::Key_Home);
    EXPECT_EQ(window.tvwdb->width(), 100);
    QTest::keyClick(window.Divider1, Qt::Key_End);
    EXPECT_EQ(window.tvwdb->width(), 920 - 240);
    expectFilled(window);
    QTest::keyClick(window.Divider1, Qt::Key_Return);
    EXPECT_EQ(window.tvwdb->width(), before) << "its share again";
    QTest::keyClick(window.Divider1, Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), window.Combo1) << "it is the last one";
}

TEST_F(ExplorerDivision, NeitherSideCanBeDraggedAway) {
    EXMain& window = rig.open();
    enlarge(window, 300, 100);
    drag(window, -2000);
    EXPECT_EQ(window.tvwdb->width(), 100);
    drag(window, 2000);
    EXPECT_GE(window.lvwdb->width(), 230);
    expectFilled(window);
    drag(window, -10);
    EXPECT_GE(window.lvwdb->width(), 240) << "the handle follows from where it stands";
}

TEST_F(ExplorerDivision, BackAtTheFirstSizeEverythingIsAsAtTheStart) {
    EXMain& window = rig.open();
    enlarge(window, 300, 100);
    drag(window, 90);
    const int divided = window.tvwdb->width();
    enlarge(window, 0, 0);
    EXPECT_THAT(movedControls(window), IsEmpty());
    EXPECT_FALSE(window.Divider1->isVisible());
    enlarge(window, 300, 100);
    EXPECT_EQ(window.tvwdb->width(), divided);
}

TEST_F(ExplorerDivision, ItDoesNotShrinkBelowItsFirstSize) {
    EXMain& window = rig.open();
    enlarge(window, -200, -200);
    EXPECT_EQ(window.size(), window.firstSize());
}

TEST_F(ExplorerDivision, ADesktopThatMakesItSmallerCutsTheFirstLayout) {
    EXMain& window = rig.open();
    window.setMinimumSize(0, 0);
    window.resize(200, 100);
    kit::yield();
    EXPECT_THAT(movedControls(window), IsEmpty());
    window.resize(200, 700);
    kit::yield();
    EXPECT_EQ(window.tvwdb->width(), 152);
    EXPECT_EQ(rightEnd(window.lvwdb), 618);
}

TEST_F(ExplorerDivision, SizeAndDivisionAreThereAgain) {
    EXMain& first = rig.open();
    enlarge(first, 120, 130);
    drag(first, 44);
    const int tree = first.tvwdb->width();
    leave(first);
    EXMain& second = rig.open();
    EXPECT_EQ(second.size(), second.firstSize() + QSize(120, 130));
    EXPECT_EQ(second.tvwdb->width(), tree);
    expectFilled(second);
    enlarge(second, 0, 0);
    emit second.Divider1->DblClick();
    second.RunCommand("scan");
    app::Windows::Unload("Scanform");
    EXPECT_EQ(rig.open().size(), QSize(620, 454)) << "kept also when a task window follows";
    EXPECT_THAT(settings().childGroups(), IsEmpty());
}

TEST_F(ExplorerDivision, AMaximisedExplorerIsMaximisedAgain) {
    EXMain& first = rig.open();
    first.setWindowState(first.windowState() | Qt::WindowMaximized);
    kit::yield();
    leave(first);
    EXMain& second = rig.open();
    EXPECT_TRUE(second.isMaximized());
    second.setState(kit::Form::State::Minimised);
    second.setState(kit::Form::State::Normal);
    EXPECT_TRUE(second.isMaximized());
}

TEST_F(ExplorerDivision, AKeptSizeIsFittedToTheScreen) {
    settings().setValue("Explorer/Size", QSize(30000, 20000));
    settings().setValue("Explorer/Tree", 25000);
    EXMain& window = rig.open();
    const QSize screen = window.screen()->availableSize();
    EXPECT_EQ(window.width(), screen.width());
    EXPECT_LT(window.height(), screen.height()) << "the title bar has room, too";
    EXPECT_GE(window.lvwdb->width(), 230);
    expectFilled(window);
}

TEST_F(ExplorerDivision, KeptValuesThatMakeNoSenseArePassedOver) {
    for (const QVariant& value : {QVariant("nonsense"), QVariant(-7), QVariant(QSize(3, -3)), QVariant(QSize(3, 3)),
                                  QVariant("nan"), QVariant("inf")}) {
        settings().setValue("Explorer/Size", value);
        settings().setValue("Explorer/Tree", value);
        settings().setValue("Explorer/Maximised", value);
        EXMain& window = rig.open();
        EXPECT_GE(window.width(), 620);
        expectFilled(window);
        leave(window);
        settings().clear();
    }
}

} // namespace discaro::test
