#include "db/Shelf.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace discaro::db::test {
namespace {

using base::ErrorNumber;
using testing::ElementsAre;

class DataSources : public Shelf {
protected:
    DataSources() {
        addDisc(1, "one");
        addDisc(2, "two");
        m_source.SetDatabaseName(path());
        m_source.SetRecordSource("Discs");
    }

    Recordset& rows() { return m_source.Recordset(); }

    DataSource m_source;
};

TEST_F(DataSources, RefreshOpensAnUpdatableViewOnItsFirstRow) {
    m_source.Refresh();
    EXPECT_EQ(rows().Type(), RecordsetType::Dynaset);
    EXPECT_TRUE(rows().Updatable());
    EXPECT_EQ(rows()("id number").Text(), "1");
    EXPECT_EQ(m_source.Database()->Name(), path().string());
}

TEST_F(DataSources, ReadOnlyOpensASnapshot) {
    m_source.SetReadOnly(true);
    m_source.Refresh();
    EXPECT_EQ(rows().Type(), RecordsetType::Snapshot);
    EXPECT_EQ(errorOf([&] { rows().Edit(); }), number(ErrorNumber::NotAllowed));
    EXPECT_EQ(errorOf([&] { m_source.UpdateRecord(); }), number(ErrorNumber::NotAllowed));
}

TEST_F(DataSources, RefreshRunsAQueryAnew) {
    m_source.SetRecordSource("select * from Discs where [id number] > 1");
    m_source.Refresh();
    EXPECT_EQ(rows().RecordCount(), 1);
    m_source.SetRecordSource("select * from Discs where [id number] > 0 order by [prefered name] desc");
    m_source.Refresh();
    EXPECT_EQ(rows()("prefered name").Text(), "two");
}

TEST_F(DataSources, ARefusedRefreshKeepsTheEarlierRecordset) {
    m_source.Refresh();
    rows().MoveNext();
    m_source.SetRecordSource("Colours");
    EXPECT_EQ(errorOf([&] { m_source.Refresh(); }), number(ErrorNumber::UnknownTable));
    EXPECT_EQ(rows()("id number").Text(), "2");
    m_source.SetDatabaseName(folder() / "lost.db");
    EXPECT_EQ(errorOf([&] { m_source.Refresh(); }), number(ErrorNumber::FileMissing));
    EXPECT_EQ(rows()("id number").Text(), "2");
}

TEST_F(DataSources, ANeverOpenedOneHasNoRecordset) {
    EXPECT_FALSE(m_source.HasRecordset());
    EXPECT_EQ(errorOf([&] { (void)m_source.Recordset(); }), number(ErrorNumber::HandleClosed));
    EXPECT_EQ(errorOf([&] { m_source.UpdateRecord(); }), number(ErrorNumber::HandleClosed));
    EXPECT_EQ(m_source.Database(), nullptr);
    m_source.Close();
}

TEST_F(DataSources, BoundControlsWriteAtUpdateAndShowEveryNewRow) {
    std::string box;
    m_source.repositioned = [&] { box = rows().Eof() ? "" : rows()("prefered name").Text(); };
    m_source.beforeUpdate = [&] { rows()("prefered name") = box; };
    m_source.Refresh();
    EXPECT_EQ(box, "one");
    rows().MoveNext();
    EXPECT_EQ(box, "two");
    rows().Edit();
    box = "typed";
    rows().Update();
    EXPECT_EQ(rows()("prefered name").Text(), "typed");
    rows().FindFirst("[id number] = 1");
    EXPECT_EQ(box, "one");
    rows().FindFirst("[id number] = 77");
    EXPECT_EQ(box, "one");
}

TEST_F(DataSources, AddNewShowsAnEmptyRowAndCancelTheOldOne) {
    std::string box = "?";
    m_source.repositioned = [&] { box = rows()("prefered name").Text(); };
    m_source.Refresh();
    rows().AddNew();
    EXPECT_EQ(box, "");
    rows().CancelUpdate();
    EXPECT_EQ(box, "one");
    rows().AddNew();
    rows()("id number") = 3;
    rows().Update();
    EXPECT_EQ(box, "one");
}

TEST_F(DataSources, UpdateRecordSavesTheEditInProgress) {
    m_source.Refresh();
    rows().AddNew();
    rows()("id number") = 3;
    m_source.UpdateRecord();
    EXPECT_FALSE(rows().EditInProgress());
    EXPECT_THAT(allTexts(rows(), "id number"), ElementsAre("1", "2", "3"));
}

TEST_F(DataSources, UpdateRecordWithoutAnEditSavesWhatTheControlsHold) {
    std::string box = "typed";
    m_source.beforeUpdate = [&] { rows()("prefered name") = box; };
    m_source.Refresh();
    m_source.UpdateRecord();
    EXPECT_EQ(rows()("prefered name").Text(), "typed");
    m_source.SetRecordSource("select * from Discs where [id number] = 77");
    m_source.Refresh();
    EXPECT_EQ(errorOf([&] { m_source.UpdateRecord(); }), number(ErrorNumber::NoCurrentRecord));
}

TEST_F(DataSources, AControlsTextThatTheFieldRefusesStopsTheUpdate) {
    m_source.beforeUpdate = [&] { rows()("id number") = "none"; };
    m_source.Refresh();
    EXPECT_EQ(errorOf([&] { m_source.UpdateRecord(); }), number(ErrorNumber::DataTypeConversion));
    EXPECT_TRUE(rows().EditInProgress());
    rows().CancelUpdate();
    EXPECT_EQ(rows()("id number").Text(), "1");
}

TEST_F(DataSources, ASortedCopyTakesThePlaceOfTheRecordset) {
    std::string box;
    m_source.SetReadOnly(true);
    m_source.repositioned = [&] { box = rows()("prefered name").Text(); };
    m_source.Refresh();
    rows().SetSort("[prefered name] desc");
    m_source.SetRecordset(rows().OpenRecordset());
    EXPECT_EQ(box, "two");
    rows().MoveNext();
    EXPECT_EQ(box, "one");
}

TEST_F(DataSources, CloseEndsTheRecordsetAndRefreshOpensAgain) {
    m_source.Refresh();
    rows().Edit();
    rows()("prefered name") = "lost";
    m_source.Close();
    m_source.Close();
    EXPECT_FALSE(m_source.HasRecordset());
    EXPECT_EQ(errorOf([&] { rows().MoveNext(); }), number(ErrorNumber::HandleClosed));
    m_source.Refresh();
    EXPECT_EQ(rows()("prefered name").Text(), "one");
}

TEST_F(DataSources, ClosingItsDatabaseClosesItAndASecondTimeFails) {
    m_source.Refresh();
    m_source.Database()->Close();
    EXPECT_FALSE(m_source.HasRecordset());
    EXPECT_EQ(errorOf([&] { m_source.Database()->Close(); }), number(ErrorNumber::HandleClosed));
    m_source.Refresh();
    EXPECT_EQ(rows().RecordCount(), 2);
}

} // namespace
} // namespace discaro::db::test
