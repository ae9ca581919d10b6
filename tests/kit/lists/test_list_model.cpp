#include "base/RuntimeError.h"
#include "kit/lists/ListModel.h"

#include <QtCore/QItemSelectionModel>
#include <QtCore/QPersistentModelIndex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::kit {

using testing::ElementsAre;

namespace {

ListItem row(const char* text, std::vector<QString> subItems = {}) {
    return {.key = {}, .text = QString::fromUtf8(text), .icon = {}, .tag = {}, .subItems = std::move(subItems)};
}

std::vector<std::string> textsOf(const ListModel& model) {
    std::vector<std::string> texts;
    for (int place = 0; place < model.count(); ++place)
        texts.push_back(model.item(place).text.toStdString());
    return texts;
}

ListModel& filled(ListModel& model, std::initializer_list<const char*> texts) {
    for (const char* text : texts)
        model.add(row(text));
    model.flush();
    return model;
}

} // namespace

TEST(ListModel, KeepsTheOrderOfAddingUntilItIsSorted) {
    ListModel model;
    filled(model, {"b", "C", "a"});
    EXPECT_THAT(textsOf(model), ElementsAre("b", "C", "a"));
    model.setSorted(true);
    EXPECT_THAT(textsOf(model), ElementsAre("a", "b", "C"));
    model.setSorted(false);
    EXPECT_THAT(textsOf(model), ElementsAre("a", "b", "C"));
    filled(model, {"B"});
    EXPECT_THAT(textsOf(model), ElementsAre("a", "b", "C", "B"));
}

TEST(ListModel, AddedRowsTakeTheirPlacesWhileSorted) {
    ListModel model;
    model.setSorted(true);
    filled(model, {"m", "z"});
    filled(model, {"a", "q"});
    EXPECT_THAT(textsOf(model), ElementsAre("a", "m", "q", "z"));
}

TEST(ListModel, EqualTextsKeepTheOrderOfAddingInBothDirections) {
    ListModel model;
    for (const char* name : {"1", "2", "3"})
        model.add(row(name, {"same"}));
    model.setSortKey(1);
    model.setSorted(true);
    EXPECT_THAT(textsOf(model), ElementsAre("1", "2", "3"));
    model.setSortOrder(Qt::DescendingOrder);
    EXPECT_THAT(textsOf(model), ElementsAre("1", "2", "3"));
}

TEST(ListModel, AccentedLettersStandWithTheirBaseLetter) {
    ListModel model;
    filled(model, {"zebra", "\u00C4rger", "b", "\u00e4hnlich", "Azur", "A\u0308hre"});
    model.setSorted(true);
    EXPECT_THAT(textsOf(model), ElementsAre("Azur", "\u00e4hnlich", "A\u0308hre", "\u00C4rger", "b", "zebra"));
}

TEST(ListModel, RowsWithoutTheSortColumnComeFirstWhenAscending) {
    ListModel model;
    model.add(row("file", {"x", "7"}));
    model.add(row("directory"));
    model.setSortKey(2);
    model.setSorted(true);
    EXPECT_THAT(textsOf(model), ElementsAre("directory", "file"));
    model.setSortOrder(Qt::DescendingOrder);
    EXPECT_THAT(textsOf(model), ElementsAre("file", "directory"));
}

TEST(ListModel, WaitingRowsAreCountedAtOnceAndShownLater) {
    ListModel model;
    model.add(row("a"));
    EXPECT_EQ(model.count(), 1);
    EXPECT_EQ(model.item(0).text, "a");
    EXPECT_EQ(model.rowCount(), 0);
    model.flush();
    EXPECT_EQ(model.rowCount(), 1);
    model.clear();
    EXPECT_EQ(model.count(), 0);
}

TEST(ListModel, AKeyStandsForOneRow) {
    ListModel model;
    ListItem item = row("first");
    item.key = "7id";
    model.add(item);
    EXPECT_THROW(model.add(item), base::RuntimeError);
    EXPECT_EQ(model.count(), 1);
    filled(model, {"b", "a"});
    model.setSorted(true);
    EXPECT_EQ(model.placeOf("7id"), 2);
    EXPECT_EQ(model.placeOf("8id"), -1);
    model.clear();
    EXPECT_NO_THROW(model.add(item));
}

TEST(ListModel, APlaceOutsideTheListIsRefused) {
    ListModel model;
    filled(model, {"a"});
    EXPECT_THROW(model.item(-1), base::RuntimeError);
    EXPECT_THROW(model.item(1), base::RuntimeError);
}

TEST(ListModel, SelectedRowsStaySelectedWhenTheOrderChanges) {
    ListModel model;
    filled(model, {"c", "a", "b"});
    QItemSelectionModel selection(&model);
    selection.select(model.index(0, 0), QItemSelectionModel::Select | QItemSelectionModel::Rows);
    const QPersistentModelIndex kept(model.index(2, 0));
    model.setSorted(true);
    EXPECT_TRUE(selection.isRowSelected(2, {}));
    EXPECT_FALSE(selection.isRowSelected(0, {}));
    EXPECT_EQ(kept.row(), 1);
    filled(model, {"0"});
    EXPECT_TRUE(selection.isRowSelected(3, {}));
}

TEST(ListModel, CellsShowOneLineOfPlainText) {
    ListModel model;
    model.setColumns({{"Name", 10}, {"Value", 10, Qt::AlignRight}});
    model.add(row("a\tb", {"one\r\ntwo\nthree\u2028four\u202E!"}));
    model.flush();
    EXPECT_EQ(model.index(0, 0).data(Qt::DisplayRole), "a b");
    EXPECT_EQ(model.index(0, 1).data(Qt::DisplayRole), "one two three four!");
    EXPECT_EQ(model.item(0).column(1), QString("one\r\ntwo\nthree\u2028four\u202E!"));
    EXPECT_EQ(model.index(0, 1).data(Qt::TextAlignmentRole).toInt(), int(Qt::AlignRight | Qt::AlignVCenter));
    EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole), "Value");
}

TEST(ListModel, AVeryLongTextIsShownInPart) {
    ListModel model;
    const QString longText(100000, u'x');
    model.add({.key = {}, .text = longText, .icon = {}, .tag = {}, .subItems = {}});
    model.flush();
    EXPECT_LT(model.index(0, 0).data(Qt::DisplayRole).toString().size(), 2000);
    EXPECT_LT(model.index(0, 0).data(Qt::ToolTipRole).toString().size(), 3000);
    EXPECT_EQ(model.item(0).text, longText);
}

TEST(ListModel, RowsAreSpokenWithTheColumnsThatAreSeen) {
    ListModel model;
    model.setColumns({{"Name", 10}, {"Size", 10}, {"Real Size", 0}, {"Note", 10}});
    model.add(row(" DOCS"));
    model.add(row("%1.txt", {"12 Kb", "000000000012", ""}));
    model.flush();
    EXPECT_EQ(model.index(0, 0).data(Qt::AccessibleTextRole), " DOCS");
    EXPECT_EQ(model.index(1, 0).data(Qt::AccessibleTextRole), "%1.txt, Size 12 Kb");
    EXPECT_EQ(model.index(1, 1).data(Qt::AccessibleTextRole), "12 Kb");
}

TEST(ListModel, NamesAreSpokenAsTheyAre) {
    ListModel model;
    for (const char* name : {"R&D", "two  blanks ", "colon:"})
        EXPECT_EQ(filled(model, {name}).index(model.count() - 1, 0).data(Qt::AccessibleTextRole), name);
}

TEST(ListModel, ColumnsThatAreNotSeenAreNoCells) {
    ListModel model;
    model.setColumns({{"Name", 10}, {"Size", 10}, {"Real Size", 0}, {"Note", 10}});
    model.add(row("a", {"12 Kb", "000000000012", "n"}));
    model.flush();
    EXPECT_EQ(model.columnCount(), 3);
    EXPECT_EQ(model.index(0, 2).data(Qt::DisplayRole), "n");
    EXPECT_EQ(model.headerData(2, Qt::Horizontal, Qt::DisplayRole), "Note");
    EXPECT_EQ(model.columnOf(2), 3);
    EXPECT_EQ(model.sectionOf(3), 2);
    EXPECT_EQ(model.sectionOf(2), 1) << "the one in front of it";
    model.setSortKey(2);
    model.setSorted(true);
    EXPECT_EQ(model.item(0).column(2), "000000000012");
}

TEST(ListModel, PicturesComeByKeyInTheFirstColumn) {
    ListModel model;
    model.setColumns({{"Name", 10}, {"Value", 10}});
    ListItem item = row("a", {"b"});
    item.icon = "exe";
    model.add(item);
    model.add(row("none"));
    model.flush();
    std::vector<QString> asked;
    model.setPictures([&](const QString& key) {
        asked.push_back(key);
        return QIcon();
    });
    EXPECT_TRUE(model.index(0, 0).data(Qt::DecorationRole).isValid());
    EXPECT_FALSE(model.index(0, 1).data(Qt::DecorationRole).isValid());
    EXPECT_FALSE(model.index(1, 0).data(Qt::DecorationRole).isValid());
    EXPECT_EQ(asked, std::vector<QString>{"exe"});
}

} // namespace discaro::kit
