#include "explorer/ExplorerRig.h"
#include "kit/program/Yield.h"

#include <QtCore/QTimer>

namespace discaro::test {

using explorer::EXMain;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;
using testing::SizeIs;
namespace shared = app::Module1;

namespace {

// What a user can do while the discs of Show All Contents come in one by one.
class AllContents : public ExplorerTest {
protected:
    AllContents() {
        for (int disc = 3; disc <= 40; ++disc) {
            rig.catalogue.add(DiscRow{.number = disc, .name = "Disc " + std::to_string(disc)});
            rig.catalogue.addRoot(disc);
        }
    }
    // Runs a step in the yield behind a disc that has come in.
    void showAll(EXMain& window, const std::function<void()>& step) {
        EXPECT_GT(window.Combo1->count(), 39);
        m_pending = step;
        QObject::connect(&window.tvwdb->nodes(), &kit::TreeModel::Waiting, &window,
                         [&] { QTimer::singleShot(0, &window, [this, &window] { atFirstDisc(window); }); });
        window.MenuBar1->item("Showall").trigger();
        EXPECT_FALSE(m_pending) << "the step did not come to run";
        kit::yield();
    }

private:
    void atFirstDisc(EXMain& window) {
        const int nodes = window.tvwdb->nodes().count();
        if (m_pending && nodes > 1 && nodes < 40)
            std::exchange(m_pending, nullptr)();
        else if (m_pending)
            QTimer::singleShot(0, &window, [this, &window] { atFirstDisc(window); });
    }

    std::function<void()> m_pending;
};

} // namespace

TEST_F(AllContents, ComeInWholeWhenNobodyInterferes) {
    EXMain& window = rig.open();
    bool ran = false;
    showAll(window, [&] { ran = true; });
    EXPECT_TRUE(ran);
    EXPECT_EQ(window.tvwdb->nodes().count(), 41);
    EXPECT_FALSE(window.prgload->isVisible());
}

TEST_F(AllContents, ADiscChosenMeanwhileHasTheTreeToItself) {
    EXMain& window = rig.open();
    const int games = window.Combo1->findData(1);
    showAll(window, [&] { window.Combo1->setListIndex(games); });
    EXPECT_EQ(window.tvwdb->nodes().text(1), "CD-ROM Number  1");
    EXPECT_EQ(window.tvwdb->nodes().count(), 5);
    EXPECT_EQ(window.Label3->text(), "CD-ROM Number : 1");
    EXPECT_EQ(shownPane(window), "DriveInfo");
    EXPECT_FALSE(window.prgload->isVisible());
    clickNode(window, "C1D1");
    EXPECT_EQ(shownPane(window), "lvwdb") << "the view of facts belongs to all contents";
}

TEST_F(AllContents, ARefreshMeanwhileHasTheTreeToItself) {
    EXMain& window = rig.open();
    window.Combo1->setListIndex(3);
    showAll(window, [&] { choose(window, "refreshall"); });
    EXPECT_EQ(window.Combo1->listIndex(), 0);
    EXPECT_EQ(window.tvwdb->nodes().text(1), "CD-ROM Number  2");
    EXPECT_EQ(window.tvwdb->nodes().count(), 3);
}

TEST_F(AllContents, AnotherOneMeanwhileIsTheOneThatComesIn) {
    EXMain& window = rig.open();
    showAll(window, [&] { window.MenuBar1->item("Showall").trigger(); });
    EXPECT_EQ(window.tvwdb->nodes().count(), 41);
    EXPECT_THAT(childrenOf(window, "R"), SizeIs(40));
}

TEST_F(AllContents, ANodeClickedMeanwhileIsListedAndTheRestComesIn) {
    EXMain& window = rig.open();
    showAll(window, [&] {
        window.tvwdb->flush();
        clickNode(window, "C1D1");
    });
    EXPECT_EQ(window.tvwdb->nodes().count(), 41);
    EXPECT_THAT(textsOf(*window.lvwdb), ElementsAre("readme.txt", "setup.exe"));
    EXPECT_EQ(shownPane(window), "Dirinfo");
}

TEST_F(AllContents, TheWindowMayGoMeanwhile) {
    EXMain& window = rig.open();
    showAll(window, [&] { window.RunCommand("exit"); });
    EXPECT_TRUE(window.isUnloaded());
    EXPECT_TRUE(rig.isUp("Switch"));
    EXPECT_LT(window.tvwdb->nodes().count(), 40);
}

TEST_F(AllContents, TheCatalogueHandleMayBeReplacedOrClosedMeanwhile) {
    EXMain& window = rig.open();
    showAll(window, [] { shared::CatalogueDb.reset(); });
    EXPECT_EQ(window.tvwdb->nodes().count(), 41) << "the build keeps the handle that it began with";
    showAll(window, [] { shared::CatalogueDb->Close(); });
    EXPECT_LT(window.tvwdb->nodes().count(), 41);
    EXPECT_TRUE(window.isVisible());
}

} // namespace discaro::test
