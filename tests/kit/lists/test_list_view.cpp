#include "base/RuntimeError.h"
#include "kit/common/Colour.h"
#include "kit/common/WindowScale.h"
#include "kit/lists/CellDelegate.h"
#include "kit/lists/ListView.h"
#include "support/windows/FormProbe.h"

#include <QtGui/QClipboard>
#include <QtGui/QMouseEvent>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QProxyStyle>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace discaro::kit {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class ListViewTest : public testing::Test {
protected:
    explicit ListViewTest(bool many = true) {
        m_list.resize(400, 300);
        m_list.setColumns({{"Name", 120}, {"Value", 120}});
        if (many)
            m_list.setMultiSelect();
        m_list.show();
    }
    void add(std::initializer_list<const char*> texts) {
        for (const char* text : texts)
            m_list.add({.key = {}, .text = text, .icon = {}, .tag = {}, .subItems = {"value"}});
        m_list.rows();
    }
    void click(int place, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) {
        QTest::mouseClick(m_list.shown().viewport(), button, keys, at(place));
    }
    // The colour behind a row, at its end.
    static QColor paintedBeside(QAbstractItemView& view, const QModelIndex& row) {
        const QRect place = view.visualRect(row);
        return view.viewport()->grab().toImage().pixelColor(place.right() - 2, place.center().y());
    }
    QPoint at(int place) {
        const QRect row = m_list.shown().visualRect(m_list.rows().index(place, 0));
        return {row.left() + 8, row.center().y()};
    }
    QHeaderView& header() { return *static_cast<QTreeView&>(m_list.shown()).header(); }
    void clickHeader(int section) {
        QTest::mouseClick(header().viewport(), Qt::LeftButton, {},
                          QPoint(header().sectionViewportPosition(section) + 20, 4));
    }
    // By the mouse, at the right end of a column.
    void dragHeaderEdge(int section, int by) {
        QWidget* headers = header().viewport();
        const int edge = header().sectionViewportPosition(section) + header().sectionSize(section);
        const QPoint from(edge - 1, 4);
        const QPoint to = from + QPoint(by, 0);
        QTest::mousePress(headers, Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, headers->mapToGlobal(to), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(headers, &move);
        QTest::mouseRelease(headers, Qt::LeftButton, {}, to);
    }
    void key(Qt::Key which, Qt::KeyboardModifiers with = {}) { QTest::keyClick(&m_list.shown(), which, with); }

    ListView m_list;
};

// A list in which one row at most is selected, as most windows have it.
class SingleListViewTest : public ListViewTest {
protected:
    SingleListViewTest()
        : ListViewTest(false) {}

    void drag(QPoint from, QPoint to) {
        QWidget* viewport = m_list.shown().viewport();
        QTest::mousePress(viewport, Qt::LeftButton, {}, from);
        for (const QPoint place : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, place, viewport->mapToGlobal(place), Qt::NoButton, Qt::LeftButton, {});
            QApplication::sendEvent(viewport, &move);
        }
        QTest::mouseRelease(viewport, Qt::LeftButton, {}, to);
    }
};

// Draws as ever, and notes which way the mark of an order points.
class DrawnMarks : public QProxyStyle {
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (const auto* mark = qstyleoption_cast<const QStyleOptionHeader*>(option);
            mark && element == PE_IndicatorHeaderArrow)
            last = mark->sortIndicator;
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    mutable QStyleOptionHeader::SortIndicator last = QStyleOptionHeader::None;
};

// The texts as the cells paint them.
class ShownTexts : private CellDelegate {
public:
    explicit ShownTexts(ListView& list)
        : m_list(list) {}
    QString of(int place) const {
        QStyleOptionViewItem option;
        option.initFrom(&m_list.shown());
        option.widget = &m_list.shown();
        initStyleOption(&option, m_list.rows().index(place, 0));
        return option.text;
    }

private:
    ListView& m_list;
};

} // namespace

TEST_F(ListViewTest, AFilledListHasItsFirstRowForItemAndNoneSelected) {
    EXPECT_EQ(m_list.selectedItem(), -1);
    EXPECT_THROW(m_list.selectedRow(), base::RuntimeError);
    add({"a", "b"});
    EXPECT_EQ(m_list.selectedItem(), 0);
    EXPECT_EQ(m_list.selectedRow().text, "a");
    EXPECT_FALSE(m_list.isSelected(0));
    EXPECT_THAT(m_list.selectedPlaces(), IsEmpty());
    m_list.clear();
    EXPECT_EQ(m_list.selectedItem(), -1);
}

TEST_F(ListViewTest, TheFirstRowOfAFilledListLooksSelectedWhereTheWindowWantsIt) {
    m_list.setFirstSelected();
    for (int filled = 0; filled < 2; ++filled) {
        add({"b", "a"});
        EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{0});
        EXPECT_EQ(m_list.selectedItem(), 0);
        m_list.select(1);
        add({"c"});
        EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{1}) << "until another is";
        m_list.clear();
        EXPECT_THAT(m_list.selectedPlaces(), IsEmpty());
    }
    m_list.rows().setSorted(true);
    add({"b", "a"});
    EXPECT_EQ(m_list.selectedRow().text, "a") << "the first as it is shown";
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(m_list.selectedPlaces(), ElementsAre(0, 1));
}

TEST_F(ListViewTest, AddedRowsShowAtTheNextReturnToTheEventLoop) {
    m_list.add({.key = {}, .text = "a", .icon = {}, .tag = {}, .subItems = {}});
    EXPECT_EQ(m_list.model().rowCount(), 0);
    QApplication::processEvents();
    EXPECT_EQ(m_list.model().rowCount(), 1);
}

TEST_F(ListViewTest, AClickIsToldWhenTheSelectionStands) {
    add({"a", "b", "c"});
    std::vector<std::vector<int>> selected;
    QObject::connect(&m_list, &ListView::Click, [&] { selected.push_back(m_list.selectedPlaces()); });
    QSignalSpy items(&m_list, &ListView::ItemClick);
    click(1);
    click(2, Qt::LeftButton, Qt::ControlModifier);
    click(2, Qt::LeftButton, Qt::ControlModifier);
    QTest::mouseClick(m_list.shown().viewport(), Qt::LeftButton, {}, QPoint(20, 200));
    EXPECT_THAT(selected, ElementsAre(ElementsAre(1), ElementsAre(1, 2), ElementsAre(1), IsEmpty()));
    EXPECT_EQ(items.size(), 3);
    EXPECT_EQ(m_list.selectedItem(), 2) << "the item that the keyboard is on";
}

TEST_F(ListViewTest, TheProgramsSelectionTellsNothing) {
    add({"a", "b"});
    QSignalSpy clicks(&m_list, &ListView::Click);
    QSignalSpy items(&m_list, &ListView::ItemClick);
    m_list.select(1);
    m_list.select(77);
    EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{1});
    EXPECT_TRUE(clicks.isEmpty());
    EXPECT_TRUE(items.isEmpty());
}

TEST_F(ListViewTest, ArrowsTellClickAndItem) {
    add({"a", "b", "c"});
    QSignalSpy clicks(&m_list, &ListView::Click);
    QSignalSpy items(&m_list, &ListView::ItemClick);
    key(Qt::Key_Down);
    EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{1});
    key(Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_THAT(m_list.selectedPlaces(), ElementsAre(1, 2));
    EXPECT_EQ(clicks.size(), 2);
    EXPECT_EQ(items.size(), 2);
    key(Qt::Key_Down);
    EXPECT_EQ(items.size(), 2) << "there is nowhere to go";
}

TEST_F(ListViewTest, AKeyThatComesBeforeTheRowsAreShownTellsNothing) {
    m_list.setFirstSelected();
    m_list.add({.key = {}, .text = "a", .icon = {}, .tag = {}, .subItems = {}});
    QSignalSpy clicks(&m_list, &ListView::Click);
    key(Qt::Key_Shift);
    EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{0});
    EXPECT_EQ(clicks.size(), 0);
}

TEST_F(ListViewTest, DoubleClicksAndEnterNeedARow) {
    QSignalSpy chosen(&m_list, &ListView::DblClick);
    key(Qt::Key_Return);
    QTest::mouseDClick(m_list.shown().viewport(), Qt::LeftButton);
    EXPECT_TRUE(chosen.isEmpty());
    add({"a"});
    QTest::mouseDClick(m_list.shown().viewport(), Qt::LeftButton, {}, at(0));
    QTest::mouseDClick(m_list.shown().viewport(), Qt::RightButton, {}, at(0));
    key(Qt::Key_Enter);
    EXPECT_EQ(chosen.size(), 2);
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QApplication::sendEvent(&m_list.shown(), &held);
    EXPECT_EQ(chosen.size(), 2) << "a key that is held chooses once";
}

TEST_F(ListViewTest, TheReleaseThatEndsADoubleClickIsNoClick) {
    add({"a", "b"});
    std::vector<std::string> heard;
    QObject::connect(&m_list, &ListView::Click, [&] { heard.emplace_back("click"); });
    QObject::connect(&m_list, &ListView::DblClick, [&] { heard.emplace_back("double"); });
    QObject::connect(&m_list, &ListView::DblClickBeside, [&] { heard.emplace_back("beside"); });
    QWidget* room = m_list.shown().viewport();
    for (const QPoint place : {at(1), QPoint(20, 200)}) {
        heard.clear();
        QTest::mouseClick(room, Qt::LeftButton, {}, place);
        QTest::mouseDClick(room, Qt::LeftButton, {}, place);
        QTest::mouseRelease(room, Qt::LeftButton, {}, place);
        const bool beside = place == QPoint(20, 200);
        EXPECT_THAT(heard, ElementsAre("click", beside ? "beside" : "double"));
        QTest::mouseClick(room, Qt::LeftButton, {}, place);
        EXPECT_EQ(heard.back(), "click");
    }
}

TEST_F(ListViewTest, WidthsThatTheUserSetStay) {
    add({"a"});
    auto& report = static_cast<QTreeView&>(m_list.shown());
    report.setColumnWidth(0, 77);
    m_list.clear();
    add({"b"});
    EXPECT_EQ(report.columnWidth(0), 77);
    m_list.setView(ListView::View::List);
    m_list.setView(ListView::View::Report);
    EXPECT_EQ(report.columnWidth(0), 77);
    EXPECT_EQ(report.columnWidth(1), 120);
    m_list.setColumns({{"Name", 50}, {"Value", 60}});
    EXPECT_EQ(report.columnWidth(0), 50);
}

TEST_F(ListViewTest, TheFirstColumnTakesTheRoomThatIsLeftUntilTheUserChangesAWidth) {
    const auto& report = static_cast<QTreeView&>(m_list.shown());
    m_list.fillWithFirstColumn();
    EXPECT_EQ(report.columnWidth(0), report.viewport()->width() - 120);
    m_list.resize(500, 300);
    EXPECT_EQ(report.columnWidth(0), report.viewport()->width() - 120);
    m_list.resize(200, 300);
    EXPECT_EQ(report.columnWidth(0), 120) << "its own width";
    EXPECT_EQ(report.columnWidth(1), 120);
    dragHeaderEdge(1, -40);
    m_list.resize(600, 300);
    EXPECT_EQ(report.columnWidth(0), 120);
    EXPECT_EQ(report.columnWidth(1), 80);
    m_list.setView(ListView::View::List);
    m_list.setView(ListView::View::Report);
    m_list.resize(700, 300);
    EXPECT_EQ(report.columnWidth(0), 120) << "in every look";
    m_list.setColumns({{"Name", 50}, {"Value", 60}});
    EXPECT_EQ(report.columnWidth(0), report.viewport()->width() - 60);
}

TEST_F(ListViewTest, TheMenuComesByRightButtonAndByKey) {
    add({"a", "b"});
    QSignalSpy wanted(&m_list, &ListView::MenuWanted);
    QTest::mousePress(m_list.shown().viewport(), Qt::RightButton, {}, at(1));
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted[0][0].toPoint(), m_list.shown().viewport()->mapToGlobal(at(1)));
    EXPECT_EQ(m_list.selectedItem(), 1);
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(m_list.shown().viewport(), &byKey);
    QContextMenuEvent byMouse(QContextMenuEvent::Mouse, {}, {});
    QApplication::sendEvent(m_list.shown().viewport(), &byMouse);
    EXPECT_EQ(wanted.size(), 2);
}

TEST_F(ListViewTest, EveryLookHasTheSameRowsAndSelection) {
    add({"a", "b", "c"});
    m_list.select(2);
    for (const auto view : {ListView::View::LargeIcons, ListView::View::SmallIcons, ListView::View::List,
                            ListView::View::Report, ListView::View::List}) {
        m_list.setView(view);
        EXPECT_EQ(m_list.view(), view);
        EXPECT_EQ(m_list.selectedItem(), 2);
        EXPECT_TRUE(m_list.isSelected(2));
        EXPECT_EQ(m_list.shown().model()->rowCount(), 3);
        click(0);
        EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{0});
        m_list.select(2);
    }
}

TEST_F(ListViewTest, RowsStaySelectedWithAllTheirCellsWhenTheLookChanges) {
    add({"a", "b", "c"});
    click(0);
    click(2, Qt::LeftButton, Qt::ControlModifier);
    for (const auto view : {ListView::View::List, ListView::View::Report}) {
        m_list.setView(view);
        EXPECT_THAT(m_list.selectedPlaces(), ElementsAre(0, 2));
        EXPECT_TRUE(m_list.isSelected(2));
        const QModelIndex last = m_list.rows().index(0, m_list.shown().model()->columnCount() - 1);
        EXPECT_TRUE(m_list.shown().selectionModel()->isSelected(last));
    }
}

TEST_F(ListViewTest, PicturesGrowWithTheFont) {
    const auto sizes = [] {
        ListView list;
        list.setColumns({{"Name", 120}});
        std::vector<int> sides;
        for (const auto view : {ListView::View::Report, ListView::View::SmallIcons, ListView::View::LargeIcons}) {
            list.setView(view);
            sides.push_back(list.shown().iconSize().width());
            EXPECT_EQ(list.shown().iconSize().height(), sides.back());
        }
        return sides;
    };
    EXPECT_THAT(sizes(), ElementsAre(16, 16, 32));
    const test::LargerFont larger(2);
    const int scaled = scaledLength(16);
    EXPECT_GT(scaled, 24);
    EXPECT_THAT(sizes(), ElementsAre(scaled, scaled, scaledLength(32)));
}

TEST_F(ListViewTest, BelowALargePictureThereIsRoomForTwoLines) {
    add({"a", "A NAME OF MANY WORDS THAT IS LONG"});
    m_list.setView(ListView::View::LargeIcons);
    const QRect small = m_list.shown().visualRect(m_list.rows().index(0, 0));
    const QRect large = m_list.shown().visualRect(m_list.rows().index(1, 0));
    EXPECT_EQ(small.size(), large.size()) << "whatever the first name is";
    const int line = QFontMetrics(m_list.font()).height();
    EXPECT_GE(large.height(), m_list.shown().iconSize().height() + 2 * line);
    EXPECT_FALSE(small.intersects(large));
}

TEST_F(ListViewTest, BelowALargePictureAWordBreaksWhereItHasTo) {
    add({"AVeryLongNameOfAFile.txt", "short.txt", "ANameThatIsMuchTooLongForTheRoomOfTwoLinesBelowAPicture.txt"});
    m_list.setView(ListView::View::LargeIcons);
    const ShownTexts shown(m_list);
    const QStringList lines = shown.of(0).split(QChar(QChar::LineSeparator));
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines.join(QString()), "AVeryLongNameOfAFile.txt");
    EXPECT_EQ(shown.of(1), "short.txt");
    EXPECT_EQ(shown.of(2).count(QChar(QChar::LineSeparator)), 1);
    EXPECT_TRUE(shown.of(2).endsWith(QChar(0x2026)));
    for (int place = 0; place < 3; ++place)
        for (const QString& line : shown.of(place).split(QChar(QChar::LineSeparator)))
            EXPECT_LT(m_list.fontMetrics().horizontalAdvance(line),
                      m_list.shown().visualRect(m_list.rows().index(place, 0)).width());
}

TEST_F(ListViewTest, BesideASmallPictureANameHasTheRoomThatItNeeds) {
    m_list.resize(640, 300);
    const QString longName = "A name of middling length.txt";
    for (const auto view : {ListView::View::SmallIcons, ListView::View::List}) {
        m_list.clear();
        m_list.add({.key = {}, .text = longName, .icon = {}, .tag = {}, .subItems = {}});
        add({"b", "c"});
        m_list.setView(view);
        const QRect place = m_list.shown().visualRect(m_list.rows().index(0, 0));
        EXPECT_GT(place.width(), m_list.shown().iconSize().width() + m_list.fontMetrics().horizontalAdvance(longName));
        EXPECT_FALSE(place.intersects(m_list.shown().visualRect(m_list.rows().index(1, 0))));
    }
}

TEST_F(ListViewTest, SmallIconsStandInColumnsThatFillTheWidth) {
    add({"a", "A name of middling length that is long.txt", "b", "c", "d", "e", "f", "g", "h"});
    for (const int width : {466, 640, 817}) {
        m_list.resize(width, 300);
        m_list.setView(ListView::View::Report);
        m_list.setView(ListView::View::SmallIcons);
        const auto place = [this](int row) { return m_list.shown().visualRect(m_list.rows().index(row, 0)); };
        const int column = place(0).width();
        EXPECT_EQ(place(1).width() % column, 0);
        int right = 0;
        for (int row = 0; row < 9; ++row) {
            EXPECT_EQ(place(row).left() % column, 0);
            right = std::max(right, place(row).right());
        }
        EXPECT_GT(right, width - column) << "whatever the width";
    }
}

TEST_F(ListViewTest, RowsStandAnewWhenTheListGetsAnotherSize) {
    add({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"});
    const auto place = [this](int row) { return m_list.shown().visualRect(m_list.rows().index(row, 0)); };
    for (const auto view : {ListView::View::SmallIcons, ListView::View::LargeIcons}) {
        m_list.resize(200, 300);
        m_list.setView(view);
        EXPECT_GT(place(11).top(), place(0).top());
        m_list.resize(3000, 300);
        EXPECT_EQ(place(11).top(), place(0).top()) << "all have room in one line";
    }
    m_list.resize(400, 90);
    m_list.setView(ListView::View::List);
    EXPECT_GT(place(11).left(), place(0).left());
    m_list.resize(400, 1000);
    EXPECT_EQ(place(11).left(), place(0).left()) << "all have room below each other";
}

TEST_F(ListViewTest, ANameWiderThanTheListIsAsWideAsTheList) {
    const QString name(300, u'W');
    m_list.add({.key = {}, .text = name, .icon = {}, .tag = {}, .subItems = {}});
    add({"b"});
    for (const auto view : {ListView::View::SmallIcons, ListView::View::List}) {
        m_list.setView(view);
        EXPECT_LE(m_list.shown().visualRect(m_list.rows().index(0, 0)).width(), m_list.shown().viewport()->width());
    }
}

TEST_F(ListViewTest, RowsFarDownComeIntoSightInEveryLook) {
    for (int row = 0; row < 2000; ++row)
        m_list.add({.key = {}, .text = QString::number(row), .icon = {}, .tag = {}, .subItems = {}});
    for (const auto view :
         {ListView::View::LargeIcons, ListView::View::SmallIcons, ListView::View::List, ListView::View::Report}) {
        m_list.setView(view);
        m_list.ensureVisible(0);
        m_list.ensureVisible(1900);
        const QRect row = m_list.shown().visualRect(m_list.rows().index(1900, 0));
        EXPECT_TRUE(m_list.shown().viewport()->rect().contains(row.center()));
    }
}

// ---- The focus

TEST_F(ListViewTest, TheSelectionIsPaleWithoutTheFocus) {
    add({"a"});
    for (const auto view : {ListView::View::Report, ListView::View::List}) {
        m_list.setView(view);
        m_list.select(0);
        const QColor ground = paintedBeside(m_list.shown(), m_list.rows().index(0, 0));
        const QPalette colours = m_list.palette();
        EXPECT_NE(ground, colours.color(QPalette::Active, QPalette::Highlight));
        EXPECT_GE(contrast(colours.color(QPalette::Active, QPalette::Text), ground), 4.5);
        EXPECT_GE(contrast(ground, colours.color(QPalette::Active, QPalette::Base)), 1.2);
    }
}

TEST_F(ListViewTest, ThePaleSelectionFollowsThePalette) {
    add({"a"});
    m_list.select(0);
    QPalette dark = m_list.palette();
    dark.setColor(QPalette::Base, Qt::black);
    dark.setColor(QPalette::Text, Qt::white);
    m_list.setPalette(dark);
    const QColor ground = paintedBeside(m_list.shown(), m_list.rows().index(0, 0));
    EXPECT_LT(ground.lightness(), 100);
    EXPECT_NE(ground, QColor(Qt::black));
}

TEST_F(ListViewTest, ColoursOfTheirOwnWouldMakeTheHeadersPicturesBeKeptForEachView) {
    EXPECT_FALSE(m_list.shown().testAttribute(Qt::WA_SetPalette));
    EXPECT_EQ(&paleWithoutFocus(m_list.palette()), &paleWithoutFocus(m_list.palette()));
}

TEST_F(ListViewTest, TheFocusStaysWhenTheLookChanges) {
    add({"a"});
    m_list.setFocus();
    m_list.setView(ListView::View::List);
    EXPECT_EQ(m_list.window()->focusWidget(), &m_list.shown());
}

// ---- Keys

TEST_F(ListViewTest, TheRowsSelectedAreCopied) {
    add({" DOCS", "R&D  1:", "c"});
    QApplication::clipboard()->setText("before");
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "before") << "no row is selected";
    click(1);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "R&D  1:");
    click(2, Qt::LeftButton, Qt::ControlModifier);
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "R&D  1:\nc");
    m_list.setCopied([](const ListItem& row) { return row.column(1); });
    key(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "value\nvalue");
}

TEST_F(ListViewTest, BackspaceIsTold) {
    QSignalSpy backspaces(&m_list, &ListView::Backspace);
    key(Qt::Key_Backspace);
    add({"a"});
    key(Qt::Key_Backspace);
    key(Qt::Key_Backspace, Qt::ControlModifier);
    EXPECT_EQ(backspaces.size(), 2);
}

// ---- A list without rows

TEST_F(ListViewTest, AListWithoutRowsSaysWhatItWasGiven) {
    const QImage bare = m_list.grab().toImage();
    m_list.setEmptyText("Nothing is here");
    EXPECT_NE(m_list.grab().toImage(), bare);
    EXPECT_EQ(m_list.shown().accessibleDescription(), "Nothing is here");
    m_list.setView(ListView::View::List);
    EXPECT_EQ(m_list.shown().accessibleDescription(), "Nothing is here");
    m_list.setView(ListView::View::Report);
    m_list.setEmptyText({});
    EXPECT_EQ(m_list.grab().toImage(), bare);
}

TEST_F(ListViewTest, TypingSkipsBlanksAndCase) {
    add({" DOCS", "Apple", "data", "zebra"});
    m_list.select(3);
    key(Qt::Key_D);
    EXPECT_EQ(m_list.selectedItem(), 0);
    key(Qt::Key_D);
    EXPECT_EQ(m_list.selectedItem(), 2) << "the same letter again goes on";
}

TEST_F(ListViewTest, TypingABeginningNarrowsDown) {
    add({"alpha", "delta", "desk"});
    QTest::keyClicks(&m_list.shown(), "des");
    EXPECT_EQ(m_list.selectedItem(), 2);
    QTest::keyClicks(&m_list.shown(), "!");
    EXPECT_EQ(m_list.selectedItem(), 2);
}

TEST_F(ListViewTest, TheViewInsideSaysTheNameOfTheList) {
    m_list.setAccessibleName("Files");
    m_list.hide();
    m_list.show();
    EXPECT_EQ(m_list.shown().accessibleName(), "Files");
    m_list.setView(ListView::View::List);
    EXPECT_EQ(m_list.shown().accessibleName(), "Files");
}

TEST_F(ListViewTest, ColumnsOfNoWidthAreNotInTheViewAlsoAfterAChangeOfLook) {
    m_list.setColumns({{"Name", 120}, {"Sort", 0}, {"Value", 60}});
    EXPECT_EQ(header().count(), 2);
    m_list.setView(ListView::View::List);
    m_list.setView(ListView::View::Report);
    EXPECT_EQ(header().count(), 2);
    EXPECT_EQ(header().sectionSize(1), 60);
    QSignalSpy clicks(&m_list, &ListView::ColumnClick);
    clickHeader(1);
    ASSERT_EQ(clicks.size(), 1);
    EXPECT_EQ(clicks[0][0].toInt(), 2) << "the column, with those that are not seen";
}

TEST_F(ListViewTest, ColumnsCannotBeDraggedToAnotherPlace) {
    add({"a"});
    EXPECT_FALSE(header().sectionsMovable());
    QWidget* place = header().viewport();
    const int middle = header().height() / 2;
    QTest::mousePress(place, Qt::LeftButton, {}, QPoint(20, middle));
    for (const int x : {60, 160, 220}) {
        const QPoint at(x, middle);
        QMouseEvent move(QEvent::MouseMove, at, place->mapToGlobal(at), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(place, &move);
    }
    QTest::mouseRelease(place, Qt::LeftButton, {}, QPoint(220, middle));
    EXPECT_EQ(header().visualIndex(0), 0);
}

// ---- The mark of the order

TEST_F(ListViewTest, TheMarkOfTheOrderComesWithTheFirstChoice) {
    m_list.setColumns({{"Name", 120}, {"Value", 60}, {"Sort", 0}});
    add({"a", "b"});
    m_list.rows().setSortOrder(Qt::AscendingOrder);
    EXPECT_FALSE(header().isSortIndicatorShown());
    clickHeader(1);
    EXPECT_FALSE(header().isSortIndicatorShown()) << "a click alone orders nothing";
    m_list.rows().setSortKey(2);
    m_list.rows().setSorted(true);
    EXPECT_TRUE(header().isSortIndicatorShown());
    EXPECT_EQ(header().sortIndicatorSection(), 1) << "in front of the column that is not seen";
    m_list.rows().setSortOrder(Qt::DescendingOrder);
    EXPECT_EQ(header().sortIndicatorOrder(), Qt::DescendingOrder);
    m_list.setView(ListView::View::List);
    m_list.rows().setSortKey(0);
    m_list.setView(ListView::View::Report);
    EXPECT_TRUE(header().isSortIndicatorShown());
    EXPECT_EQ(header().sortIndicatorSection(), 0);
}

TEST_F(ListViewTest, TheMarkOfTheOrderShowsTheOrderInForceHoweverOftenAHeaderIsClicked) {
    add({"a", "b"});
    m_list.rows().setSorted(true);
    for (const int section : {0, 0, 1, 0}) {
        clickHeader(section);
        EXPECT_EQ(header().sortIndicatorSection(), 0);
        EXPECT_EQ(header().sortIndicatorOrder(), Qt::AscendingOrder);
    }
}

TEST_F(ListViewTest, TheMarkOfTheOrderPointsUpWhereTheOrderAscends) {
    DrawnMarks marks;
    header().setStyle(&marks);
    add({"a", "b"});
    m_list.rows().setSorted(true);
    header().grab();
    EXPECT_EQ(marks.last, QStyleOptionHeader::SortUp);
    m_list.rows().setSortOrder(Qt::DescendingOrder);
    header().grab();
    EXPECT_EQ(marks.last, QStyleOptionHeader::SortDown);
    header().setStyle(nullptr);
}

TEST_F(SingleListViewTest, TheRowClickedStaysTheOneSelectedWhenTheMouseIsDraggedOn) {
    add({"a", "b", "c"});
    for (const auto view :
         {ListView::View::Report, ListView::View::List, ListView::View::SmallIcons, ListView::View::LargeIcons}) {
        m_list.setView(view);
        QSignalSpy items(&m_list, &ListView::ItemClick);
        const std::vector<std::pair<int, QPoint>> drags{{1, at(2)}, {1, at(0)}, {0, QPoint(380, 280)}, {2, at(1)}};
        for (const auto& [clicked, to] : drags) {
            drag(at(clicked), to);
            EXPECT_EQ(items.takeLast()[0].toInt(), clicked);
            EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{clicked});
            EXPECT_EQ(m_list.selectedItem(), clicked);
        }
        EXPECT_TRUE(items.isEmpty()) << "one for each";
    }
}

TEST_F(SingleListViewTest, NeitherControlNorEmptyGroundTakesTheSelectionAway) {
    add({"a", "b"});
    click(1);
    click(1, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{1});
    key(Qt::Key_Space, Qt::ControlModifier);
    EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{1});
    QTest::mouseClick(m_list.shown().viewport(), Qt::LeftButton, {}, QPoint(20, 200));
    drag(QPoint(20, 200), at(0));
    EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{1});
    EXPECT_EQ(m_list.selectedItem(), 1);
}

TEST_F(SingleListViewTest, WithoutHeadersTheLastColumnReachesTheEdge) {
    auto& report = static_cast<QTreeView&>(m_list.shown());
    EXPECT_EQ(report.columnWidth(1), 120);
    m_list.hideHeaders();
    QApplication::processEvents();
    EXPECT_EQ(report.columnWidth(0), 120);
    EXPECT_EQ(report.columnWidth(1), report.viewport()->width() - 120);
}

TEST_F(SingleListViewTest, EveryKeyThatMovesTheSelectionTellsItsRow) {
    add({"a", "b", "c"});
    m_list.select(0);
    for (const auto& [which, with] :
         {std::pair(Qt::Key_Down, Qt::NoModifier), std::pair(Qt::Key_Down, Qt::ControlModifier),
          std::pair(Qt::Key_Up, Qt::ShiftModifier), std::pair(Qt::Key_End, Qt::NoModifier),
          std::pair(Qt::Key_Home, Qt::ControlModifier), std::pair(Qt::Key_B, Qt::NoModifier)}) {
        QSignalSpy items(&m_list, &ListView::ItemClick);
        key(which, with);
        ASSERT_EQ(items.size(), 1) << "key " << which;
        EXPECT_EQ(m_list.selectedPlaces(), std::vector<int>{items[0][0].toInt()});
        EXPECT_EQ(m_list.selectedItem(), items[0][0].toInt());
    }
}

TEST_F(ListViewTest, SeveralRowsAreStillSelectedByDraggingWhereThatIsAllowed) {
    add({"a", "b", "c"});
    QWidget* viewport = m_list.shown().viewport();
    QTest::mousePress(viewport, Qt::LeftButton, {}, at(0));
    QMouseEvent move(QEvent::MouseMove, at(2), viewport->mapToGlobal(at(2)), Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(viewport, &move);
    QTest::mouseRelease(viewport, Qt::LeftButton, {}, at(2));
    EXPECT_THAT(m_list.selectedPlaces(), ElementsAre(0, 1, 2));
}

} // namespace discaro::kit
