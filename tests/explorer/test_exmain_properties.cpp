#include "app/Windows.h"
#include "explorer/EXCDROM.h"
#include "explorer/EXDir.h"
#include "explorer/ExplorerRig.h"

namespace discaro::test {

using explorer::EXCDROM;
using explorer::EXDir;
using explorer::EXMain;

namespace {

// The explorer with its real properties windows.
class ExplorerProperties : public ExplorerTest {
protected:
    // The next window of that name has a text typed into one of its boxes, and its OK pressed, once it has found its
    // row.
    template <typename Window, typename Base>
    void typeWhenShown(const char* name, kit::TextBox* Base::*box, const char* text) {
        app::Windows::Register(name, [box, text] {
            auto* made = new Window;
            QObject::connect(made->Timer1, &kit::Timer::Tick, made, [made, box, text] {
                (made->*box)->selectAll();
                QTest::keyClicks(&(made->*box)->editor(), text);
                made->Command2->click();
            });
            return made;
        });
    }
};

} // namespace

TEST_F(ExplorerProperties, ANewCommentShowsWhenTheNodeIsListedAgain) {
    typeWhenShown<EXDir>("EXDir", &EXDir::Text1, "Lent to Anna");
    EXMain& window = rig.open();
    window.Combo1->setListIndex(1);
    window.RunCommand("info view");
    clickNode(window, "C1D1S1");
    window.RunCommand("prop");
    ASSERT_EQ(rig.catalogue.text("SELECT Comments FROM Directories WHERE \"id number\" = 'C1D1S1'"), "Lent to Anna");
    EXPECT_EQ(columnOf(*window.Dirinfo, 1)[11], "");
    clickNode(window, "C1D1S1");
    EXPECT_EQ(columnOf(*window.Dirinfo, 1)[11], "") << "it is listed already";
    clickNode(window, "C1D1");
    clickNode(window, "C1D1S1");
    EXPECT_EQ(columnOf(*window.Dirinfo, 1)[11], "Lent to Anna");
}

TEST_F(ExplorerProperties, ANewDiscNameShowsAfterARefresh) {
    typeWhenShown<EXCDROM>("EXCDROM", &EXCDROM::Text3, "Zoo");
    EXMain& window = rig.open();
    window.Combo1->setListIndex(1);
    window.tvwdb->setFocus();
    window.RunCommand("prop");
    ASSERT_EQ(rig.catalogue.text("SELECT \"prefered name\" FROM Drive WHERE \"id number\" = 1"), "Zoo");
    EXPECT_EQ(window.Combo1->text(), "Games       (CD-ROM No. 1)");
    clickNode(window, "C1D1");
    clickNode(window, "R");
    EXPECT_EQ(columnOf(*window.DriveInfo, 1)[1], "Zoo") << "the facts are read again";
    EXPECT_EQ(window.Combo1->text(), "Games       (CD-ROM No. 1)");
    choose(window, "refreshall");
    EXPECT_EQ(window.Combo1->itemText(1), "Zoo       (CD-ROM No. 1)");
}

TEST_F(ExplorerProperties, ARefreshReadsTheDiscsAgainAndNotTheDirectories) {
    EXMain& window = rig.open();
    clickNode(window, "C2D1S1");
    const db::Recordset* discs = &window.Data1.Recordset();
    const db::Recordset* directories = &window.Data2.Recordset();
    const auto standsOn = window.Data2.Recordset().RowNumber();
    rig.catalogue.run("UPDATE Drive SET \"prefered name\" = 'Aachen' WHERE \"id number\" = 1");
    choose(window, "refreshall");
    EXPECT_NE(&window.Data1.Recordset(), discs);
    EXPECT_EQ(window.Data1.Recordset()("prefered name").Text(), "Aachen") << "on the first row of the catalogue";
    EXPECT_EQ(&window.Data2.Recordset(), directories);
    EXPECT_EQ(window.Data2.Recordset().RowNumber(), standsOn);
}

} // namespace discaro::test
