#include "base/RuntimeError.h"
#include "kit/SampleForm.h"
#include "kit/controls/Toolbar.h"
#include "kit/controls/ToolbarDialog.h"
#include "kit/display/ElidedLabel.h"
#include "kit/display/ImageList.h"
#include "kit/display/StatusBar.h"
#include "kit/form/MenuBar.h"
#include "kit/program/Ground.h"
#include "support/windows/FreshWindows.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QSettings>
#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QLineEdit>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Toolbar, status bar, menus, and the pictures and labels that go with them.
namespace discaro::kit {

namespace {

class ToolbarTest : public testing::Test {
protected:
    ToolbarTest() {
        m_window.resize(300, 100);
        m_toolbar.setGeometry(0, 40, 300, 28);
        m_toolbar.setButtons({{"One", "First", "one", 1, true},
                              {"Two", "Second", "two", 1},
                              {},
                              {"Three", "Third", "three"},
                              {"Four", "Fourth", "four"}});
        m_window.show();
        QApplication::setActiveWindow(&m_window);
    }

    const test::FreshWindows m_fresh;
    QWidget m_window;
    QLineEdit m_edit{&m_window};
    Toolbar m_toolbar{&m_window};
};

const QString kSubkey = "Software\\Maker\\Program";

} // namespace

TEST_F(ToolbarTest, AButtonTellsItsKeyAndLeavesTheFocus) {
    m_edit.setFocus();
    QSignalSpy clicks(&m_toolbar, &Toolbar::ButtonClick);
    QTest::mouseClick(&m_toolbar.button("Three"), Qt::LeftButton);
    ASSERT_EQ(clicks.size(), 1);
    EXPECT_EQ(clicks[0][0], "Three");
    EXPECT_EQ(m_window.focusWidget(), &m_edit);
}

TEST_F(ToolbarTest, OneButtonOfAGroupStaysPressed) {
    EXPECT_TRUE(m_toolbar.isPressed("One"));
    QTest::mouseClick(&m_toolbar.button("Two"), Qt::LeftButton);
    EXPECT_TRUE(m_toolbar.isPressed("Two"));
    EXPECT_FALSE(m_toolbar.isPressed("One"));
    QTest::mouseClick(&m_toolbar.button("Two"), Qt::LeftButton);
    EXPECT_TRUE(m_toolbar.isPressed("Two"));
    m_toolbar.setPressed("One");
    EXPECT_FALSE(m_toolbar.isPressed("Two"));
    EXPECT_THROW(m_toolbar.setPressed("Nine"), base::RuntimeError);
}

TEST_F(ToolbarTest, TheKeyboardGoesFromButtonToButtonAndBack) {
    m_edit.setFocus();
    m_toolbar.setButtonEnabled("Two", false);
    QSignalSpy clicks(&m_toolbar, &Toolbar::ButtonClick);
    m_toolbar.setFocus(Qt::TabFocusReason);
    EXPECT_EQ(m_window.focusWidget(), &m_toolbar.button("One"));
    QTest::keyClick(m_window.focusWidget(), Qt::Key_Right);
    EXPECT_EQ(m_window.focusWidget(), &m_toolbar.button("Three")) << "a disabled one is passed over";
    QTest::keyClick(m_window.focusWidget(), Qt::Key_Left);
    QTest::keyClick(m_window.focusWidget(), Qt::Key_Left);
    EXPECT_EQ(m_window.focusWidget(), &m_toolbar.button("Four"));
    QWidget* whenClicked = nullptr;
    QObject::connect(&m_toolbar, &Toolbar::ButtonClick, [&] { whenClicked = m_window.focusWidget(); });
    QTest::keyClick(m_window.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(clicks.size(), 1);
    EXPECT_EQ(whenClicked, &m_edit) << "as from a menu";
}

TEST_F(ToolbarTest, TheKeyboardComesBackToTheButtonThatItLeft) {
    m_toolbar.setFocus(Qt::TabFocusReason);
    QTest::keyClick(m_window.focusWidget(), Qt::Key_Right);
    QTest::keyClick(m_window.focusWidget(), Qt::Key_Right);
    m_edit.setFocus();
    QTest::keyClick(&m_edit, Qt::Key_Tab);
    EXPECT_EQ(m_window.focusWidget(), &m_toolbar.button("Three"));
}

TEST_F(ToolbarTest, TheTabKeyStopsAtTheFirstButtonThatCanBePressed) {
    const auto stop = [this] {
        m_edit.setFocus();
        QTest::keyClick(&m_edit, Qt::Key_Tab);
        return m_window.focusWidget()->objectName();
    };
    m_edit.setObjectName("edit");
    m_toolbar.setButtonEnabled("Four", false);
    m_toolbar.setArrangement({"Four", "Three", "One"});
    EXPECT_EQ(stop(), "Three");
    m_toolbar.setButtonEnabled("Three", false);
    EXPECT_EQ(stop(), "One");
    m_toolbar.setButtonEnabled("Four", true);
    EXPECT_EQ(stop(), "One") << "it stays where the keyboard was";
    m_toolbar.setButtonEnabled("Four", false);
    m_toolbar.setButtonEnabled("One", false);
    EXPECT_EQ(stop(), "edit") << "none can be pressed";
    m_toolbar.setArrangement({"Four", "Three"});
    m_toolbar.setButtonEnabled("One", true);
    EXPECT_EQ(stop(), "edit") << "a button that is not shown";
    m_toolbar.setButtonEnabled("Four", true);
    EXPECT_EQ(stop(), "Four");
}

TEST_F(ToolbarTest, TheLayoutHasEachKnownButtonOnce) {
    m_toolbar.setArrangement({"Four", "-", "Four", "unknown", "One", "-"});
    EXPECT_EQ(m_toolbar.arrangement(), (QStringList{"Four", "-", "One", "-"}));
    EXPECT_TRUE(m_toolbar.button("Four").isVisible());
    EXPECT_FALSE(m_toolbar.button("Three").isVisible());
    EXPECT_LT(m_toolbar.button("Four").x(), m_toolbar.button("One").x());
    m_toolbar.setArrangement({});
    EXPECT_TRUE(m_toolbar.arrangement().isEmpty());
    m_toolbar.setArrangement(QStringList(1000, "-"));
    EXPECT_LE(m_toolbar.arrangement().size(), 15);
}

TEST_F(ToolbarTest, ButtonsKeepInsideTheToolbar) {
    m_toolbar.resize(60, 28);
    for (const QString& key : m_toolbar.arrangement().filter(QRegularExpression("[A-Z]")))
        EXPECT_TRUE(m_toolbar.rect().contains(m_toolbar.button(key).geometry())) << key.toStdString();
}

TEST_F(ToolbarTest, ASeparatorIsNarrowOnlyWhereRoomIsShort) {
    const auto gap = [this] {
        const QRect before = m_toolbar.button("Two").geometry();
        return m_toolbar.button("Three").x() - before.x() - before.width();
    };
    const int needed = 4 * m_toolbar.button("One").width() + 8;
    m_toolbar.resize(needed, 28);
    EXPECT_EQ(gap(), 8);
    EXPECT_EQ(m_toolbar.button("One").width(), (needed - 8) / 4);
    m_toolbar.resize(needed - 1, 28);
    EXPECT_EQ(gap(), 3);
}

TEST_F(ToolbarTest, TheLayoutIsKeptInTheUsersSettings) {
    EXPECT_FALSE(m_toolbar.RestoreToolbar("2", kSubkey, "Layout"));
    m_toolbar.setArrangement({"Four", "-", "One"});
    m_toolbar.SaveToolbar("2", kSubkey, "Layout");
    m_toolbar.setArrangement(m_toolbar.declaredArrangement());
    EXPECT_FALSE(m_toolbar.RestoreToolbar("3", kSubkey, "Layout"));
    EXPECT_TRUE(m_toolbar.RestoreToolbar("2", kSubkey, "Layout"));
    EXPECT_EQ(m_toolbar.arrangement(), (QStringList{"Four", "-", "One"}));
    EXPECT_EQ(QSettings("Maker", "Program").value("Layout/2").toStringList(), m_toolbar.arrangement());
}

TEST_F(ToolbarTest, ALayoutWithoutButtonsIsALayout) {
    m_toolbar.setArrangement({});
    m_toolbar.SaveToolbar("2", kSubkey, "Layout");
    m_toolbar.setArrangement(m_toolbar.declaredArrangement());
    EXPECT_TRUE(m_toolbar.RestoreToolbar("2", kSubkey, "Layout"));
    EXPECT_TRUE(m_toolbar.arrangement().isEmpty());
    EXPECT_FALSE(m_toolbar.button("One").isVisible());
}

TEST_F(ToolbarTest, AnySettingIsTakenForALayout) {
    QSettings("Maker", "Program").setValue("Layout/2", 12345);
    EXPECT_TRUE(m_toolbar.RestoreToolbar("2", kSubkey, "Layout"));
    EXPECT_TRUE(m_toolbar.arrangement().isEmpty());
}

TEST_F(ToolbarTest, TheDialogAddsRemovesMovesAndResets) {
    ToolbarDialog dialog(m_toolbar);
    EXPECT_EQ(dialog.present->count(), 5);
    EXPECT_EQ(dialog.available->count(), 1);
    dialog.present->setCurrentRow(1);
    dialog.remove->click();
    EXPECT_EQ(m_toolbar.arrangement(), (QStringList{"One", "-", "Three", "Four"}));
    EXPECT_EQ(dialog.available->count(), 2);
    dialog.available->setCurrentRow(1);
    dialog.present->setCurrentRow(3);
    dialog.add->click();
    EXPECT_EQ(m_toolbar.arrangement(), (QStringList{"One", "-", "Three", "Two", "Four"}));
    dialog.moveDown->click();
    EXPECT_FALSE(dialog.moveDown->isEnabled());
    dialog.present->setCurrentRow(1);
    dialog.moveUp->click();
    EXPECT_EQ(m_toolbar.arrangement().front(), "-");
    EXPECT_FALSE(dialog.moveUp->isEnabled());
    dialog.available->setCurrentRow(0);
    dialog.add->click();
    EXPECT_EQ(m_toolbar.arrangement().mid(0, 2), (QStringList{"-", "-"}));
    dialog.reset->click();
    EXPECT_EQ(m_toolbar.arrangement(), m_toolbar.declaredArrangement());
}

TEST_F(ToolbarTest, TheDialogMovesTheFirstButtonDownOnlyAndTheLastUpOnly) {
    ToolbarDialog dialog(m_toolbar);
    const auto movable = [&dialog](int row) {
        dialog.present->setCurrentRow(row);
        return std::pair(dialog.moveUp->isEnabled(), dialog.moveDown->isEnabled());
    };
    EXPECT_EQ(movable(0), std::pair(false, true));
    EXPECT_EQ(movable(1), std::pair(true, true));
    EXPECT_EQ(movable(3), std::pair(true, true));
    EXPECT_EQ(movable(4), std::pair(true, false));
    EXPECT_EQ(movable(-1), std::pair(false, false));
}

TEST_F(ToolbarTest, InTheDialogADoubleClickMovesAButtonToTheOtherList) {
    ToolbarDialog dialog(m_toolbar);
    dialog.show();
    const auto doubleClick = [](QListWidget& list, int row) {
        const QPoint place = list.visualItemRect(list.item(row)).center();
        QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
        QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
    };
    doubleClick(*dialog.present, 1);
    EXPECT_EQ(m_toolbar.arrangement(), (QStringList{"One", "-", "Three", "Four"}));
    dialog.present->setCurrentRow(0);
    doubleClick(*dialog.available, 1);
    EXPECT_EQ(m_toolbar.arrangement(), (QStringList{"Two", "One", "-", "Three", "Four"}));
}

TEST_F(ToolbarTest, TheDialogGoesOnWithANeighbourOfTheRemovedButton) {
    ToolbarDialog dialog(m_toolbar);
    dialog.present->setCurrentRow(3);
    dialog.remove->click();
    EXPECT_EQ(dialog.present->currentRow(), 3) << "the one behind it";
    dialog.remove->click();
    EXPECT_EQ(dialog.present->currentRow(), 2) << "nothing is behind the last";
    EXPECT_TRUE(dialog.remove->isEnabled());
}

TEST_F(ToolbarTest, TheDialogClosesByEscape) {
    QTimer::singleShot(0, [] {
        QWidget* dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    Customize(m_toolbar);
    EXPECT_EQ(m_toolbar.arrangement(), m_toolbar.declaredArrangement());
}

// ---- Status bar

TEST(StatusBar, AutomaticPanelsShareWhatIsLeft) {
    StatusBar bar;
    bar.resize(300, 20);
    bar.setPanels({{.width = 100, .spoken = {}}, {.autoSize = true, .spoken = {}}, {.autoSize = true, .spoken = {}}});
    EXPECT_EQ(bar.panelPlace(1), QRect(0, 0, 100, 20));
    EXPECT_EQ(bar.panelPlace(3), QRect(200, 0, 100, 20));
    bar.setAutoSize(3, false);
    bar.resize(400, 20);
    EXPECT_EQ(bar.panelPlace(2), QRect(100, 0, 200, 20));
    EXPECT_EQ(bar.panelPlace(3).width(), 100);
    EXPECT_FALSE(bar.isAutoSize(3));
}

TEST(StatusBar, PanelsStandInTheirPlacesAtOnce) {
    StatusBar bar;
    bar.resize(300, 20);
    bar.setPanels({{.width = 100, .spoken = {}}, {.autoSize = true, .spoken = {}}, {.width = 50, .spoken = {}}});
    const auto* last = bar.findChild<QLabel*>("Panels(3)");
    EXPECT_EQ(last->geometry(), QRect(250, 0, 50, 20));
    bar.setAutoSize(3, true);
    EXPECT_EQ(last->geometry(), QRect(200, 0, 100, 20));
}

TEST(StatusBar, PanelsHaveTexts) {
    StatusBar bar;
    bar.setPanels({{.width = 50, .spoken = "Count"}, {.width = 50, .spoken = {}}});
    bar.setPanelText(1, "<b>3</b> File(s)");
    EXPECT_EQ(bar.panelText(1), "<b>3</b> File(s)");
    EXPECT_EQ(bar.findChild<QLabel*>("Panels(1)")->accessibleName(), "Count: <b>3</b> File(s)");
    EXPECT_THROW(bar.panelText(0), base::RuntimeError);
    EXPECT_THROW(bar.setPanelText(3, "x"), base::RuntimeError);
}

// ---- Menus

TEST(MenuBar, IsMadeFromItsLines) {
    test::SampleForm window;
    std::vector<std::string> ran;
    const auto noted = [&ran](const char* what) { return [&ran, what](Form&) { ran.emplace_back(what); }; };
    MenuBar bar(&window);
    bar.build({menu("File", "&File",
                    {item("fileOpen", "&Open", noted("open")),
                     item("fileMark", "&Mark", noted("mark")).mark(true).separated(),
                     menu("More", "&More", {item("fileDeep", "&Deep", noted("deep"))})}),
               menu("PopUp", "", {item("popOne", "&One", noted("one"))}).hidden()},
              window);
    ASSERT_EQ(bar.actions().size(), 1);
    EXPECT_EQ(bar.actions().front()->text(), "&File");
    EXPECT_EQ(bar.menu("File").actions().size(), 4);
    EXPECT_TRUE(bar.menu("File").actions()[1]->isSeparator());
    EXPECT_FALSE(bar.item("fileOpen").isCheckable());
    EXPECT_TRUE(bar.isMarked("fileMark"));
    bar.setMarked("fileMark", false);
    EXPECT_FALSE(bar.isMarked("fileMark"));
    for (const char* name : {"fileOpen", "fileDeep", "popOne"})
        bar.item(name).trigger();
    EXPECT_EQ(ran, (std::vector<std::string>{"open", "deep", "one"}));
    EXPECT_THROW(bar.item("nothing"), base::RuntimeError);
    EXPECT_THROW(bar.menu("fileOpen"), base::RuntimeError);
}

TEST(MenuBar, ChoicesThatStandTogetherExcludeEachOther) {
    test::SampleForm window;
    MenuBar bar(&window);
    bar.build(
        {menu("View", "&View",
              {item("large", "&Large", [](Form&) {}).mark(true), item("small", "&Small", [](Form&) {}).mark(),
               item("up", "&Up", [](Form&) {}).mark(true).separated(), item("down", "&Down", [](Form&) {}).mark()})},
        window);
    bar.item("small").trigger();
    bar.item("small").trigger();
    EXPECT_TRUE(bar.isMarked("small")) << "chosen again it stays";
    EXPECT_FALSE(bar.isMarked("large"));
    EXPECT_TRUE(bar.isMarked("up")) << "another choice";
    bar.setMarked("up", false);
    EXPECT_FALSE(bar.isMarked("up"));
}

TEST(MenuBar, ItemsOfAnUnloadedWindowRest) {
    auto* window = new test::SampleForm;
    window->Load();
    auto* bar = new MenuBar(window);
    int ran = 0;
    bar->build({menu("File", "&File", {item("fileOpen", "&Open", [&ran](Form&) { ++ran; })})}, *window);
    bar->item("fileOpen").trigger();
    window->Unload();
    bar->item("fileOpen").trigger();
    EXPECT_EQ(ran, 1);
    runGroundActions();
}

// ---- Pictures and long texts

TEST(ImageList, DrawsEachSizeAndDensity) {
    ImageList list;
    list.setPictures(":/pictures/kinds", {"exe", "missing"});
    const QIcon icon = list.icon("exe");
    ASSERT_FALSE(icon.isNull());
    for (const int size : {16, 20, 32, 48})
        EXPECT_EQ(icon.pixmap(size, size).size(), QSize(size, size));
    const QPixmap dense = icon.pixmap(QSize(16, 16), 2.0);
    EXPECT_EQ(dense.size(), QSize(32, 32));
    EXPECT_EQ(dense.devicePixelRatio(), 2.0);
    EXPECT_TRUE(list.icon("missing").isNull()) << "there is no such drawing";
    EXPECT_TRUE(list.icon("font").isNull()) << "the list does not have it";
}

TEST(ImageList, DisabledPicturesArePaleAndGrey) {
    const QImage plain = pictureIcon(":/pictures/kinds/folder.svg").pixmap(32, 32).toImage();
    const QImage grey = pictureIcon(":/pictures/kinds/folder.svg").pixmap(QSize(32, 32), QIcon::Disabled).toImage();
    EXPECT_NE(plain, grey);
    for (int y = 0; y < grey.height(); ++y)
        for (int x = 0; x < grey.width(); ++x)
            EXPECT_EQ(grey.pixelColor(x, y).hsvSaturation() > 40 && grey.pixelColor(x, y).alpha() > 40, false);
}

TEST(ElidedLabel, KeepsItsWholeText) {
    ElidedLabel label;
    label.resize(80, 20);
    const QString path = "D:\\" + QString(500, u'x') + "\nsecond";
    label.setText(path);
    EXPECT_EQ(label.text(), path);
    EXPECT_FALSE(label.grab().isNull());
}

} // namespace discaro::kit
