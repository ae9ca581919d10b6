#include "app/Windows.h"
#include "base/RuntimeError.h"
#include "explorer/EXDir.h"
#include "explorer/ExplorerRig.h"
#include "kit/program/Yield.h"
#include "support/CountedSleeps.h"
#include "support/windows/ScriptedMsgBox.h"

namespace discaro::test {

using base::ErrorNumber;
using explorer::EXMain;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
namespace shared = app::Module1;

namespace {

constexpr int kOneWait = 2000; // milliseconds

// Windows that can't be loaded, and a catalogue that another program has locked.
class ExplorerErrors : public ExplorerTest {
protected:
    void breakWindow(const char* name) {
        app::Windows::Register(name, [this, name] {
            auto* made = new StubWindow(name, StubWindow::Stay::Up, rig.shown);
            made->onLoad = [] { throw base::RuntimeError(ErrorNumber::CatalogueLocked, "kvt.mde"); };
            return made;
        });
    }
    // How often a step ends the program by a report.
    int ends(const std::function<void()>& step) {
        const ThrowingEnd end;
        ScriptedMsgBox answers;
        answers.expectTitled(QCoreApplication::applicationName(), kit::Icon::Critical);
        EXPECT_THROW(asHandler(step), ProgramEnded);
        EXPECT_TRUE(answers.last().text.startsWith("Run-time error 3414:"));
        return answers.asked();
    }
    void lock() {
        m_other = std::make_unique<RawDatabase>(rig.catalogue.path());
        m_other->execute("BEGIN EXCLUSIVE");
    }
    void unlock() { m_other.reset(); }
    // The box that tells of the lock.
    static void expectLocked(ScriptedMsgBox& answers) {
        answers.expectTitled("Catalogue Locked", kit::Icon::Exclamation);
    }
    // Another window of the desktop has had the keyboard, and the explorer has it again.
    static void comeBackTo(EXMain& window) {
        QWidget other;
        other.show();
        other.activateWindow();
        kit::yield();
        ASSERT_FALSE(window.isActiveWindow());
        window.activateWindow();
        kit::yield();
        ASSERT_TRUE(window.isActiveWindow());
    }

    CountedSleeps sleeps;

private:
    std::unique_ptr<RawDatabase> m_other;
};

} // namespace

// ---- Windows that can't be loaded

TEST_F(ExplorerErrors, ATaskWindowThatFailsIsReported) {
    const std::pair<const char*, const char*> kCommands[] = {{"scan", "Scanform"},
                                                             {"delete", "DeleteCD"},
                                                             {"workshop", "Workshop"},
                                                             {"prog", "Programs"},
                                                             {"search", "Search"}};
    for (const auto& [word, target] : kCommands) {
        breakWindow(target);
        EXMain& window = openOn("C1D1");
        EXPECT_EQ(ends([&window, command = word] { window.RunCommand(command); }), 1) << word;
    }
}

TEST_F(ExplorerErrors, AMenuThatFailsIsReportedWhicheverWayTheExplorerIsLeft) {
    breakWindow("Switch");
    EXMain& first = openOn("C1D1");
    EXPECT_EQ(ends([&first] { first.RunCommand("exit"); }), 1);
    EXMain& second = openOn("C1D1");
    EXPECT_EQ(ends([&second] { second.Unload(); }), 1) << "which is what the frame's box does";
}

TEST_F(ExplorerErrors, AModalWindowThatFailsLeavesTheExplorerAsItIs) {
    for (const char* name : {"About", "EXDir", "EXCDROM", "EXFile", "ProgTag"})
        breakWindow(name);
    EXMain& window = openOn("C1D1");
    for (const char* word : {"about", "prop", "tag"})
        window.RunCommand(word);
    clickRow(*window.lvwdb, 2);
    window.RunCommand("prop");
    doubleClickRow(*window.lvwdb, 2);
    EXPECT_TRUE(window.isVisible());
    EXPECT_THAT(rig.shown, ElementsAre("About", "EXDir", "ProgTag", "EXFile", "EXFile"));
}

TEST_F(ExplorerErrors, ADoubleClickedNodeOpensAlsoWithoutItsProperties) {
    breakWindow("EXDir");
    breakWindow("EXCDROM");
    EXMain& window = openOn("C1D1");
    doubleClickNode(window, "C1D1S1");
    EXPECT_TRUE(window.tvwdb->nodes().isExpanded(nodeOf(window, "C1D1S1")));
    doubleClickNode(window, "R");
    EXPECT_TRUE(window.tvwdb->nodes().isExpanded(1));
    window.tvwdb->nodes().setExpanded(1, false);
    window.tvwdb->flush();
    QTest::keyClick(window.tvwdb, Qt::Key_Return);
    EXPECT_TRUE(window.tvwdb->nodes().isExpanded(1));
    EXPECT_THAT(rig.shown, ElementsAre("EXDir", "EXCDROM", "EXCDROM"));
}

TEST_F(ExplorerErrors, PropertiesInALockedCatalogueDoNotOpen) {
    app::Windows::Register("EXDir", [] { return new explorer::EXDir; });
    EXMain& window = openOn("C1D1");
    lock();
    doubleClickNode(window, "C1D1S1");
    QTest::keyClick(window.tvwdb, Qt::Key_Return);
    window.RunCommand("prop");
    EXPECT_FALSE(rig.isUp("EXDir"));
    EXPECT_TRUE(window.isVisible());
}

TEST_F(ExplorerErrors, WithoutACatalogueTheProgramIsLeftOnlyByAReport) {
    app::Windows::Register("Switch", [this] {
        auto* made = new StubWindow("Switch", StubWindow::Stay::Up, rig.shown);
        made->onLoad = [] { shared::OpenCatalogue(); };
        return made;
    });
    EXMain& window = openOn("C1D1");
    std::filesystem::remove(rig.catalogue.path());
    const ThrowingEnd end;
    ScriptedMsgBox answers;
    answers.expectTitled(QCoreApplication::applicationName(), kit::Icon::Critical);
    EXPECT_THROW(asHandler([&window] { window.RunCommand("exit"); }), ProgramEnded);
    EXPECT_TRUE(answers.last().text.startsWith("Run-time error 3410:"));
}

// ---- A locked catalogue

TEST_F(ExplorerErrors, AClickWaitsForTheLockOnceAndKeepsTheFactsThatWereThere) {
    EXMain& window = openOn("C1D1");
    lock();
    sleeps.takeMilliseconds();
    clickNode(window, "C1D1S1");
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
    EXPECT_THAT(columnOf(*window.Dirinfo, 1),
                ElementsAre("1", "D:\\", "D:\\", "", "2", "3", "2", "3", "1,536 Kb", "2,048 Kb", "", ""));
    EXPECT_EQ(window.lvwdb->rows().count(), 0);
    EXPECT_EQ(window.Label2->text(), "D:\\") << "the directory that was found last";
    EXPECT_EQ(window.StatusBar1->panelText(1), "0 File(s)");
    EXPECT_EQ(window.StatusBar1->panelText(2), "Total Size = 1.50 MB");
    EXPECT_FALSE(window.prgload->isVisible());
    clickNode(window, "R");
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
    EXPECT_EQ(columnOf(*window.DriveInfo, 1)[1], "Games");
    unlock();
    clickNode(window, "C1D1S1");
    EXPECT_EQ(columnOf(*window.Dirinfo, 1)[1], "DOCS");
    EXPECT_EQ(sleeps.takeMilliseconds(), 0);
}

TEST_F(ExplorerErrors, FactsThatAreNoLongerInMemoryAreWaitedForOnceToo) {
    EXMain& window = openOn("C1D1");
    {
        const auto rows = shared::CatalogueDb->OpenRecordset("Directories");
        rows->Edit();
        rows->Fields("comments") = db::Value(std::string("changed"));
        rows->Update();
    }
    lock();
    sleeps.takeMilliseconds();
    clickNode(window, "C1D1S1");
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
}

TEST_F(ExplorerErrors, EveryOtherHandlerWaitsForTheLockOnce) {
    EXMain& window = openOn("C1D1");
    clickRow(*window.lvwdb, 0);
    lock();
    sleeps.takeMilliseconds();
    window.RunCommand("tag");
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
    window.Combo1->setListIndex(0);
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
    EXPECT_EQ(window.tvwdb->nodes().count(), 1);
    choose(window, "Showall");
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
    ScriptedMsgBox answers;
    expectLocked(answers);
    choose(window, "refreshall");
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
    EXPECT_EQ(window.Combo1->count(), 0);
    rig.load(window);
    EXPECT_EQ(sleeps.takeMilliseconds(), kOneWait);
    unlock();
    choose(window, "refreshall");
    EXPECT_EQ(window.tvwdb->nodes().count(), 3);
}

TEST_F(ExplorerErrors, ALockedCatalogueIsToldOnceAfterTwoWaits) {
    lock();
    ScriptedMsgBox answers;
    expectLocked(answers);
    EXMain& window = rig.open();
    EXPECT_EQ(sleeps.takeMilliseconds(), 2 * kOneWait) << "one for each of two handlers";
    EXPECT_EQ(answers.asked(), 1);
    EXPECT_EQ(window.Combo1->count(), 0);
    EXPECT_FALSE(rig.isUp("Loading"));
}

TEST_F(ExplorerErrors, TheDiscListIsFilledWhenTheWindowComesBackAfterTheLock) {
    lock();
    ScriptedMsgBox answers;
    expectLocked(answers);
    EXMain& window = rig.open();
    comeBackTo(window);
    EXPECT_TRUE(window.Timer2->isEnabled());
    rig.load(window);
    EXPECT_EQ(window.Combo1->count(), 0) << "locked still, and not told again";
    unlock();
    comeBackTo(window);
    EXPECT_TRUE(window.Timer2->isEnabled());
    rig.load(window);
    EXPECT_EQ(window.Combo1->count(), 2);
    EXPECT_EQ(columnOf(*window.DriveInfo, 1)[1], "Atlas");
    clickNode(window, "C2D1S1");
    EXPECT_EQ(columnOf(*window.Dirinfo, 1)[1], "MAPS");
    comeBackTo(window);
    EXPECT_FALSE(window.Timer2->isEnabled()) << "nothing is left to fill";
}

TEST_F(ExplorerErrors, ViewOrderAndToolbarStayWhenTheDiscListIsFilledAfterTheLock) {
    EXMain& window = openOn("C1D1");
    window.RunCommand("info view");
    window.RunCommand("descending");
    lock();
    ScriptedMsgBox answers;
    expectLocked(answers);
    choose(window, "refreshall");
    unlock();
    comeBackTo(window);
    rig.load(window);
    ASSERT_EQ(window.Combo1->count(), 2);
    EXPECT_TRUE(window.MenuBar1->isMarked("listviewInfoView"));
    EXPECT_TRUE(window.Toolbar1->isPressed("Info View"));
    EXPECT_EQ(window.lvwdb->rows().sortOrder(), Qt::DescendingOrder);
    EXPECT_TRUE(window.MenuBar1->isMarked("DescendingOrder"));
    EXPECT_TRUE(window.Toolbar1->isPressed("descending"));
    clickNode(window, "C2D1S1");
    EXPECT_EQ(shownPane(window), "Dirinfo");
}

TEST_F(ExplorerErrors, AJumpIntoALockedCatalogueIsMadeWhenTheDiscListIsFilled) {
    shared::JumpDisc = "1";
    shared::JumpDirectory = "C1D1S1";
    lock();
    ScriptedMsgBox answers;
    expectLocked(answers);
    EXMain& window = rig.open();
    unlock();
    comeBackTo(window);
    rig.load(window);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1S1"));
    EXPECT_EQ(shared::JumpDirectory, "");
}

TEST_F(ExplorerErrors, ARefreshOfALockedCatalogueIsToldAndMadeUpFor) {
    EXMain& window = openOn("C1D1");
    lock();
    ScriptedMsgBox answers;
    expectLocked(answers);
    choose(window, "refreshall");
    expectLocked(answers);
    choose(window, "refreshall");
    unlock();
    comeBackTo(window);
    rig.load(window);
    EXPECT_EQ(window.Combo1->count(), 2);
    EXPECT_EQ(window.tvwdb->nodes().count(), 3);
}

TEST_F(ExplorerErrors, ATreeThatALockKeepsIsLeftAsItIs) {
    EXMain& window = openOn("C1D1");
    const QString name = window.tvwdb->nodes().tag(1);
    lock();
    ScriptedMsgBox answers;
    expectLocked(answers);
    choose(window, "refreshall");
    rig.load(window);
    EXPECT_EQ(window.tvwdb->selectedNode(), nodeOf(window, "C1D1"));
    EXPECT_EQ(window.tvwdb->nodes().tag(nodeOf(window, "C1D1S2")), "C1D1S2");
    EXPECT_EQ(window.tvwdb->nodes().tag(1), name);
    unlock();
}

TEST_F(ExplorerErrors, PropertiesOfTheDiscRestWhereALockKeepsTheListEmpty) {
    EXMain& window = openOn("C1D1");
    lock();
    ScriptedMsgBox answers;
    expectLocked(answers);
    choose(window, "refreshall");
    unlock();
    window.tvwdb->selectNode(1);
    window.tvwdb->setFocus();
    window.RunCommand("prop");
    EXPECT_THAT(rig.shown, IsEmpty());
}

// ---- No selected node

TEST_F(ExplorerErrors, WithoutASelectedNodeNothingIsMeant) {
    EXMain& window = openOn("C1D1");
    choose(window, "Showall");
    ASSERT_EQ(window.tvwdb->selectedNode(), 0);
    for (QWidget* control : {static_cast<QWidget*>(window.tvwdb), static_cast<QWidget*>(window.Dirinfo)})
        for (const char* word : {"prop", "tag"}) {
            control->setFocus();
            window.RunCommand(word);
        }
    for (const char* item : {"SimDir", "DirSim2", "diprop", "diprogtag"})
        choose(window, item);
    EXPECT_THAT(rig.shown, IsEmpty());
    EXPECT_EQ(rig.beeps.count(), 2) << "the simulator's two items say so, the others rest";
}

} // namespace discaro::test
