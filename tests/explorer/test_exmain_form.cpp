#include "explorer/ExplorerRig.h"
#include "kit/common/Colour.h"
#include "kit/common/Strings.h"
#include "kit/program/Ground.h"
#include "support/windows/GoldenForm.h"

#include <QtGui/QAccessible>
#include <QtGui/QPainter>

#include <sstream>

namespace discaro::test {

using explorer::EXMain;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

namespace {

std::string indent(int depth) {
    return std::string(static_cast<size_t>(depth) * 2, ' ');
}

// A menu with its items, one a line: name, caption, marks.
void describe(const QMenu& menu, int depth, std::ostream& out) {
    out << indent(depth) << kit::utf8(menu.objectName()) << " \"" << kit::utf8(menu.title()) << "\"\n";
    for (const QAction* item : menu.actions()) {
        if (item->isSeparator()) {
            out << indent(depth + 1) << "-\n";
        } else if (item->menu()) {
            describe(*item->menu(), depth + 1, out);
        } else {
            out << indent(depth + 1) << kit::utf8(item->objectName()) << " \"" << kit::utf8(item->text()) << '"';
            out << (item->isCheckable() ? (item->isChecked() ? " marked" : " unmarked") : "");
            out << (item->shortcut().isEmpty() ? "" : " shortcut") << (item->isEnabled() ? "" : " disabled") << '\n';
        }
    }
}

std::string describeMenus(const kit::MenuBar& bar) {
    std::ostringstream out;
    for (const QAction* entry : bar.actions())
        describe(*entry->menu(), 0, out);
    for (const char* popUp : {"Dirview", "Driveview", "Listviewmenu", "Treeviewmenu"}) {
        out << "pop-up ";
        describe(bar.menu(popUp), 0, out);
    }
    return out.str();
}

std::string describeToolbar(const kit::Toolbar& toolbar) {
    std::ostringstream out;
    for (const kit::ToolbarButton& button : toolbar.buttons())
        if (button.key.isEmpty())
            out << "-\n";
        else
            out << '"' << kit::utf8(button.key) << "\" tip \"" << kit::utf8(button.tip) << "\" image "
                << kit::utf8(button.image) << (button.group ? " group " + std::to_string(button.group) : "")
                << (toolbar.isPressed(button.key) ? " pressed" : "") << '\n';
    return out.str();
}

std::string describeColumns(const kit::ListView& list) {
    std::ostringstream out;
    for (const kit::ListColumn& column : list.model().columns())
        out << '"' << kit::utf8(column.header) << "\" " << column.width
            << (column.alignment == Qt::AlignRight ? " right" : " left") << '\n';
    return out.str();
}

// How many pixels of a small picture stand out from the ground that it is drawn on.
int pixelsSeen(const QIcon& icon, const QColor& ground) {
    constexpr int kSide = 16;
    constexpr double kContrast = 2.0;
    QImage drawn(kSide, kSide, QImage::Format_RGB32);
    drawn.fill(ground);
    QPainter painter(&drawn);
    painter.drawPixmap(0, 0, icon.pixmap(kSide, kSide));
    painter.end();
    int seen = 0;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x)
            seen += kit::contrast(drawn.pixelColor(x, y), ground) >= kContrast ? 1 : 0;
    return seen;
}

class ExplorerForm : public ExplorerTest {
protected:
    // The window as it is made, before any row is read.
    EXMain& made() {
        m_made = new EXMain;
        return *m_made;
    }
    ~ExplorerForm() override {
        if (m_made)
            delete static_cast<QObject*>(m_made);
    }
    QAccessibleInterface& voiceOf(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }

    EXMain* m_made = nullptr;
};

} // namespace

TEST_F(ExplorerForm, HasItsControlsInTheirPlaces) {
    expectGolden(made(), "explorer");
}

TEST_F(ExplorerForm, HasItsMenusAndPopUps) {
    expectGolden(describeMenus(*made().MenuBar1), "explorer", "EXMain-menus");
}

TEST_F(ExplorerForm, HasItsToolbar) {
    const EXMain& window = made();
    expectGolden(describeToolbar(*window.Toolbar1), "explorer", "EXMain-toolbar");
    int buttons = 0;
    for (const kit::ToolbarButton& each : window.Toolbar1->buttons())
        buttons += each.key.isEmpty() ? 0 : 1;
    EXPECT_EQ(buttons, 23);
}

TEST_F(ExplorerForm, HasItsColumns) {
    const EXMain& window = made();
    expectGolden(describeColumns(*window.lvwdb) + describeColumns(*window.DriveInfo) + describeColumns(*window.Dirinfo),
                 "explorer", "EXMain-columns");
}

TEST_F(ExplorerForm, EveryPictureIsThere) {
    EXMain& window = made();
    EXPECT_EQ(window.ImageList1->keys().size(), 27);
    EXPECT_EQ(window.ImageList2->keys().size(), 17);
    EXPECT_EQ(window.ImageList3->keys().size(), 28);
    EXPECT_EQ(window.ImageList4->keys().size(), 28);
    for (const kit::ImageList* list : {window.ImageList1, window.ImageList2, window.ImageList3})
        for (const QString& key : list->keys())
            for (const int size : {16, 32, 64})
                EXPECT_EQ(list->icon(key).pixmap(size, size).width(), size) << key.toStdString();
    EXPECT_TRUE(window.ImageList1->icon("nothing").isNull());
    for (const kit::ToolbarButton& each : window.Toolbar1->buttons())
        EXPECT_TRUE(each.key.isEmpty() || window.ImageList1->keys().contains(each.image)) << each.key.toStdString();
}

TEST_F(ExplorerForm, EveryPictureIsSeenOnASelectedRowAndOnADarkOne) {
    constexpr int kEnough = 30;
    const QColor selected(48, 140, 198);
    const QColor dark(35, 38, 41);
    EXMain& window = made();
    for (const kit::ImageList* list : {window.ImageList1, window.ImageList2, window.ImageList3})
        for (const QString& key : list->keys())
            for (const QColor& ground : {selected, dark})
                EXPECT_GE(pixelsSeen(list->icon(key), ground), kEnough)
                    << key.toStdString() << " on " << ground.name().toStdString();
}

TEST_F(ExplorerForm, TextFitsAtEveryScale) {
    for (const double scale : {1.0, 1.25, 1.5}) {
        const LargerFont larger(scale);
        EXMain& window = rig.open();
        EXPECT_THAT(cutTexts(window), IsEmpty()) << scale;
        for (const kit::ToolbarButton& each : window.Toolbar1->buttons()) {
            if (each.key.isEmpty())
                continue;
            const QRect place = window.Toolbar1->button(each.key).geometry();
            EXPECT_TRUE(window.Toolbar1->rect().contains(place)) << each.key.toStdString() << " at " << scale;
        }
        EXPECT_LE(window.MenuBar1->sizeHint().height(), window.ClientArea->y());
        window.RunCommand("exit");
        kit::runGroundActions();
    }
}

TEST_F(ExplorerForm, TheKeyboardReachesEverything) {
    EXMain& window = rig.open();
    EXPECT_THAT(tabOrder(window), ElementsAre("Combo1", "Toolbar1", "tvwdb", "lvwdb", "DriveInfo", "Dirinfo",
                                              "ListView1", "Command1", "Divider1"));
}

TEST_F(ExplorerForm, EverythingSaysWhatItIs) {
    EXMain& window = rig.open();
    window.RunCommand("file view");
    EXPECT_EQ(voiceOf(*window.tvwdb).text(QAccessible::Name), "Directories");
    EXPECT_EQ(voiceOf(*window.Divider1).text(QAccessible::Name), "Divider between directories and files");
    EXPECT_EQ(voiceOf(*window.Divider1).role(), QAccessible::Grip);
    EXPECT_EQ(voiceOf(window.lvwdb->shown()).text(QAccessible::Name), "Files and directories");
    EXPECT_EQ(voiceOf(window.DriveInfo->shown()).text(QAccessible::Name), "CD-ROM information");
    EXPECT_EQ(voiceOf(window.Toolbar1->button("prop")).text(QAccessible::Name), "Properties");
    window.RunCommand("info view");
    EXPECT_EQ(voiceOf(window.Dirinfo->shown()).text(QAccessible::Name), "Directory information");
}

TEST_F(ExplorerForm, TheDiscListSaysItsNameAndTheDisc) {
    EXMain& window = rig.open();
    EXPECT_EQ(voiceOf(*window.Combo1).text(QAccessible::Name), "CD-ROM: Atlas       (CD-ROM No. 2)");
}

TEST_F(ExplorerForm, ThePathIsSaidAsItIs) {
    EXMain& window = rig.open();
    window.Label2->setText("D:\\R&D\\a  b:");
    EXPECT_EQ(voiceOf(*window.Label2).text(QAccessible::Name), "D:\\R&D\\a  b:");
}

TEST_F(ExplorerForm, NothingIsAnItemThatIsNotSeen) {
    EXMain& window = rig.open();
    window.Combo1->setListIndex(1);
    clickNode(window, "C1D1");
    const auto items = [&](const char* look) {
        window.RunCommand(look);
        QAccessibleInterface& voice = voiceOf(window.lvwdb->shown());
        std::vector<std::string> names;
        for (int child = 0; child < voice.childCount(); ++child)
            names.push_back(kit::utf8(voice.child(child)->text(QAccessible::Name)));
        return names;
    };
    const std::vector<std::string> report = items("report view");
    ASSERT_EQ(report.size(), 30U) << "six headers, and four rows of six cells";
    EXPECT_THAT(std::vector(report.begin(), report.begin() + 6),
                ElementsAre("File Name", "Size", "Extension", "Modified", "Attributes", "No. of Icons"));
    EXPECT_THAT(report, Not(Contains("000000000010")));
    for (const char* look : {"list view", "small icons", "large icons"})
        EXPECT_EQ(items(look).size(), 4U) << look;
}

TEST_F(ExplorerForm, RowsReadTheirCells) {
    EXMain& window = rig.open();
    window.Combo1->setListIndex(1);
    clickNode(window, "C1D1");
    kit::ListModel& rows = window.lvwdb->rows();
    EXPECT_EQ(rows.index(3, 0).data(Qt::AccessibleTextRole),
              "setup.exe, Size 1,526 Kb, Extension .exe File, Modified 04/28/99, Attributes RA, "
              "No. of Icons 3");
    EXPECT_EQ(rows.index(0, 0).data(Qt::AccessibleTextRole), " DOCS");
    EXPECT_EQ(window.DriveInfo->rows().index(1, 0).data(Qt::AccessibleTextRole), "Preferred Name, Value Games");
    EXPECT_EQ(window.tvwdb->nodes().index(0, 0).data(Qt::AccessibleTextRole), "CD-ROM Number  1");
}

} // namespace discaro::test
