#include "kit/SampleTest.h"

#include <QtWidgets/QMenu>

using namespace discaro;
using namespace discaro::test;
using ::testing::ElementsAre;

namespace {

class TrayIcon : public SampleTest {
protected:
    void SetUp() override {
        form->Show();
        form->heard.clear();
    }

    kit::TrayIcon& icon() { return *form->TrayIcon1; }
};

} // namespace

TEST_F(TrayIcon, StartsWithTheCommonSettings) {
    EXPECT_EQ(icon().toolTipText(), "");
    EXPECT_TRUE(icon().isEnabled());
    EXPECT_TRUE(icon().trueClick());
    EXPECT_TRUE(icon().isVisible());
    EXPECT_FALSE(icon().flashSound());
    EXPECT_FALSE(icon().flashEnabled());
    EXPECT_EQ(icon().flashInterval(), 1000);
    EXPECT_FALSE(icon().icon().isNull());
}

TEST_F(TrayIcon, KeepsItsSettingsWithoutATray) {
    icon().setToolTipText("Discaro");
    icon().setVisible(false);
    icon().setVisible(true);
    icon().setIcon(QIcon(":/pictures/tray-scan.svg"));
    icon().setFlashIcon(QIcon(":/pictures/tray-idle.svg"));
    EXPECT_EQ(icon().toolTipText(), "Discaro");
    EXPECT_TRUE(icon().isVisible());
    EXPECT_FALSE(icon().flashIcon().isNull());
}

TEST_F(TrayIcon, ALeftClickRestores) {
    icon().activate(QSystemTrayIcon::Trigger);
    EXPECT_THAT(form->heard, ElementsAre("restore"));
}

TEST_F(TrayIcon, AMiddleClickMinimises) {
    icon().activate(QSystemTrayIcon::MiddleClick);
    EXPECT_THAT(form->heard, ElementsAre("minimise"));
}

TEST_F(TrayIcon, ARightClickRaisesNothingByItself) {
    icon().activate(QSystemTrayIcon::Context);
    EXPECT_THAT(form->heard, ElementsAre());
}

TEST_F(TrayIcon, ADoubleClickRestoresOnceWithTrueClick) {
    icon().activate(QSystemTrayIcon::Trigger);
    icon().activate(QSystemTrayIcon::DoubleClick);
    EXPECT_THAT(form->heard, ElementsAre("restore"));
}

TEST_F(TrayIcon, ADoubleClickRestoresTwiceWithoutTrueClick) {
    icon().setTrueClick(false);
    icon().activate(QSystemTrayIcon::Trigger);
    icon().activate(QSystemTrayIcon::DoubleClick);
    EXPECT_THAT(form->heard, ElementsAre("restore", "restore"));
}

TEST_F(TrayIcon, ADoubleClickThatCameAloneRestores) {
    icon().activate(QSystemTrayIcon::DoubleClick);
    EXPECT_THAT(form->heard, ElementsAre("restore"));
}

TEST_F(TrayIcon, ItsMenuRestoresAndMinimises) {
    const auto actions = icon().menu().actions();
    ASSERT_EQ(actions.size(), 2);
    EXPECT_EQ(actions[0]->text(), "&Restore");
    EXPECT_EQ(actions[1]->text(), "&Minimize");
    actions[1]->trigger();
    actions[0]->trigger();
    EXPECT_THAT(form->heard, ElementsAre("minimise", "restore"));
}

TEST_F(TrayIcon, RaisesNothingWhileDisabled) {
    icon().setEnabled(false);
    icon().activate(QSystemTrayIcon::Trigger);
    icon().menu().actions()[0]->trigger();
    EXPECT_THAT(form->heard, ElementsAre());
}

TEST_F(TrayIcon, FlashesAtItsIntervalAndShowsItsIconWhenItStops) {
    icon().setFlashInterval(1);
    EXPECT_FALSE(icon().isFlashed());
    icon().setFlashEnabled(true);
    EXPECT_TRUE(waitFor([this] { return icon().isFlashed(); }));
    EXPECT_TRUE(waitFor([this] { return !icon().isFlashed(); }));
    EXPECT_TRUE(waitFor([this] { return icon().isFlashed(); }));
    icon().setFlashEnabled(false);
    EXPECT_FALSE(icon().isFlashed());
}

TEST_F(TrayIcon, BeepsAtEachFlashOnlyWhenTold) {
    const CountedBeeps beeps;
    icon().setFlashInterval(1);
    icon().setFlashEnabled(true);
    EXPECT_TRUE(waitFor([this] { return icon().isFlashed(); }));
    EXPECT_EQ(beeps.count(), 0);
    icon().setFlashSound(true);
    EXPECT_TRUE(waitFor([&] { return beeps.count() > 0; }));
}

TEST_F(TrayIcon, LeavesTheTrayWithItsWindow) {
    icon().setFlashInterval(1);
    icon().setFlashEnabled(true);
    form->Unload();
    const bool flashed = icon().isFlashed();
    form->heard.clear();
    icon().activate(QSystemTrayIcon::Trigger);
    EXPECT_THAT(form->heard, ElementsAre());
    EXPECT_EQ(icon().isFlashed(), flashed);
}
