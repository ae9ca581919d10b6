#include "catalogue/EmptyCatalogue.h"
#include "catalogue/Names.h"
#include "catalogue/Schema.h"
#include "catalogue/core/CatalogueFile.h"
#include "db/DBEngine.h"
#include "db/engine/Store.h"
#include "support/Files.h"
#include "support/QueryPlan.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <iterator>

namespace discaro::catalogue {
namespace {

using db::FieldType;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

class EmptyCatalogue : public CatalogueFile {
protected:
    std::unique_ptr<db::Recordset> rows(std::string_view text) const { return open()->OpenRecordset(text); }
    std::string plan(const std::string& sql) const { return test::queryPlan(open()->store()->connection(), sql); }
    std::string cell(const std::string& sql) const { return open()->store()->connection().text(sql); }

    // A disc with a root, a directory below it, and a file in each.
    void addDisc(int number) const {
        const std::string root = "C" + std::to_string(number) + "D1";
        const auto discs = rows(kDrive);
        discs->AddNew();
        (*discs)(drive::kIdNumber) = number;
        discs->Update();
        for (const std::string& directory : {root, root + "S1"}) {
            const auto directories = rows(kDirectories);
            directories->AddNew();
            (*directories)(directories::kDriveIdNumber) = number;
            (*directories)(directories::kIdNumber) = directory;
            directories->Update();
            const auto files = rows(kFiles);
            files->AddNew();
            (*files)(files::kDirectoryNumber) = directory;
            files->Update();
        }
    }
};

TEST_F(EmptyCatalogue, HoldsFiveTablesAndNoDisc) {
    for (const std::string_view table : {kDrive, kDirectories, kFiles, kProgTag})
        EXPECT_EQ(rows(table)->RecordCount(), 0) << table;
    EXPECT_EQ(rows(kMasterTable)->RecordCount(), 1);
}

TEST_F(EmptyCatalogue, ItsOneMasterRowIsThatOfACatalogueWithoutScans) {
    const auto master = rows(kMasterTable);
    std::vector<std::string> values;
    for (int i = 0; i < master->FieldCount(); ++i)
        values.push_back(master->Fields(i).Text());
    EXPECT_THAT(values, ElementsAre("0", "0", "0", "0", "0", "no error", "false", "", "", ""));
    EXPECT_TRUE((*master)(masterTable::kLastBackup).IsNull());
    EXPECT_EQ((*master)(masterTable::kEncryption).Value(), db::Value(false));
}

TEST_F(EmptyCatalogue, FieldsStandAtThePositionsThatResultsRelyOn) {
    EXPECT_EQ(rows("select files.* from files")->FieldCount(), 17);
    EXPECT_EQ(rows("select directories.* from directories")->FieldCount(), 12);
    EXPECT_EQ(rows("select drive.* from drive")->FieldCount(), 10);
    const auto tags = rows("select [prog tag].* from [prog tag]");
    EXPECT_EQ(tags->FieldCount(), 23);
    EXPECT_EQ(tags->Fields(1).Name(), progTag::kProgID);
    EXPECT_EQ(tags->Fields(5).Name(), progTag::kDirectoryNumber);
    EXPECT_EQ(tags->Fields(6).Name(), progTag::kFileId);
    EXPECT_EQ(tags->Fields(15).Name(), progTag::kCDNumber);
    EXPECT_EQ(tags->Fields(18).Name(), progTag::kDirectoryPath);
    EXPECT_EQ(rows(kFiles)->Fields(0).Name(), files::kDirectoryNumber);
    EXPECT_EQ(rows(kFiles)->Fields(1).Name(), files::kIdNumber);
    EXPECT_EQ(rows(kDirectories)->Fields(0).Name(), directories::kDriveIdNumber);
    EXPECT_EQ(rows(kDirectories)->Fields(2).Name(), directories::kIdNumber);
    EXPECT_EQ(rows(kDirectories)->Fields(4).Name(), directories::kDirectoryPath);
    EXPECT_EQ(rows(kDrive)->Fields(0).Name(), drive::kIdNumber);
    EXPECT_EQ(rows(kDrive)->Fields(4).Name(), drive::kPreferedName);
}

TEST_F(EmptyCatalogue, TheFileDeclaresEveryFieldAsTheSchemaSays) {
    const db::Schema expected = catalogueSchema();
    for (const db::TableDef& table : expected.tables) {
        const auto recordset = rows(table.name);
        const db::TableDef& read = *open()->store()->schema().find(table.name);
        ASSERT_EQ(recordset->FieldCount(), static_cast<int>(table.fields.size())) << table.name;
        for (int i = 0; i < recordset->FieldCount(); ++i) {
            const db::FieldDef& field = table.fields[static_cast<size_t>(i)];
            EXPECT_EQ(recordset->Fields(i).Name(), field.name) << table.name;
            EXPECT_EQ(recordset->Fields(i).Type(), field.type) << table.name << "." << field.name;
            EXPECT_EQ(read.fields[static_cast<size_t>(i)].ascii, field.ascii) << field.name;
        }
    }
}

TEST_F(EmptyCatalogue, TheDatabaseNumbersFilesAndTags) {
    for (const std::string_view table : {kFiles, kProgTag}) {
        const auto recordset = rows(table);
        for (int i = 0; i < 2; ++i) {
            recordset->AddNew();
            recordset->Update();
        }
        recordset->MoveLast();
        EXPECT_EQ((*recordset)("id number").Text(), "2") << table;
    }
}

TEST_F(EmptyCatalogue, ADiscWithALowerNumberComesLast) {
    for (const int number : {12, 5})
        addDisc(number);
    const auto discs = rows(kDrive);
    discs->MoveLast();
    EXPECT_EQ((*discs)(drive::kIdNumber).Text(), "5");
    const auto directories = rows(kDirectories);
    directories->MoveLast();
    EXPECT_EQ((*directories)(directories::kIdNumber).Text(), "C5D1S1");
}

TEST_F(EmptyCatalogue, DiscAndDirectoryNumbersAreUnique) {
    addDisc(1);
    const auto discs = rows(kDrive);
    discs->AddNew();
    (*discs)(drive::kIdNumber) = 1;
    EXPECT_THROW(discs->Update(), base::RuntimeError);
    const auto directories = rows(kDirectories);
    directories->AddNew();
    (*directories)(directories::kIdNumber) = "c1d1";
    EXPECT_THROW(directories->Update(), base::RuntimeError);
}

TEST_F(EmptyCatalogue, DeletingADiscTakesItsDirectoriesAndFilesAlongAndNoTags) {
    addDisc(1);
    addDisc(11);
    const auto tags = rows(kProgTag);
    tags->AddNew();
    (*tags)(progTag::kCDNumber) = 1;
    tags->Update();
    const auto discs = rows(kDrive);
    discs->Delete();
    EXPECT_EQ(rows(kDrive)->RecordCount(), 1);
    EXPECT_EQ(rows(kDirectories)->RecordCount(), 2);
    EXPECT_EQ(rows(kFiles)->RecordCount(), 2);
    EXPECT_EQ(rows(kProgTag)->RecordCount(), 1);
    EXPECT_EQ((*rows(kFiles))(files::kDirectoryNumber).Text(), "C11D1");
}

TEST_F(EmptyCatalogue, DeletingADirectoryTakesItsFilesAlong) {
    addDisc(1);
    const auto directories = rows("select * from directories where [id number] like 'C1D1S1'");
    directories->Delete();
    EXPECT_EQ(rows(kFiles)->RecordCount(), 1);
    EXPECT_EQ(rows(kDirectories)->RecordCount(), 1);
}

TEST_F(EmptyCatalogue, TheQueriesOfTheTreeAreIndexSearches) {
    const auto search = [](const char* index) {
        return AllOf(HasSubstr("SEARCH"), HasSubstr(index), Not(HasSubstr("SCAN")));
    };
    EXPECT_THAT(plan("SELECT * FROM Drive WHERE \"id number\"=5"), search("Drive id number"));
    EXPECT_THAT(plan("SELECT * FROM Directories WHERE \"id number\">='a' AND \"id number\"<'b'"),
                search("Directories id number"));
    EXPECT_THAT(plan("SELECT * FROM Directories WHERE \"drive id number\"=5 ORDER BY rowid"),
                search("Directories drive id number"));
    EXPECT_THAT(plan("SELECT * FROM Directories WHERE \"Parent id\"='a' ORDER BY rowid"),
                search("Directories Parent id"));
    EXPECT_THAT(plan("SELECT * FROM Files WHERE \"directory number\"='a' ORDER BY rowid"),
                search("Files directory number"));
    EXPECT_THAT(plan("SELECT * FROM Files WHERE \"file name\">='a' AND \"file name\"<'b'"), search("Files file name"));
    EXPECT_THAT(plan("SELECT rowid FROM Files ORDER BY \"file name\""),
                AllOf(HasSubstr("Files file name"), Not(HasSubstr("TEMP B-TREE"))));
}

TEST_F(EmptyCatalogue, LongTextsHoldAWholeLog) {
    const std::string log(3'000'000, '#');
    const auto discs = rows(kDrive);
    discs->AddNew();
    (*discs)(drive::kComments) = log;
    discs->Update();
    discs->MoveLast();
    EXPECT_EQ((*discs)(drive::kComments).Text(), log);
}

TEST_F(EmptyCatalogue, IsMarkedAsACatalogueAndSound) {
    EXPECT_EQ(cell("PRAGMA application_id"), std::to_string(kApplicationId));
    EXPECT_EQ(cell("PRAGMA user_version"), std::to_string(kFormatVersion));
    EXPECT_EQ(cell("PRAGMA integrity_check"), "ok");
    EXPECT_EQ(cell("PRAGMA encoding"), "UTF-8");
}

TEST_F(EmptyCatalogue, NeverTakesThePlaceOfAnotherFile) {
    addDisc(1);
    EXPECT_THROW(createEmptyCatalogue(path()), base::RuntimeError);
    EXPECT_EQ(rows(kDrive)->RecordCount(), 1);
    test::writeFile(folder() / "notes", "mine");
    EXPECT_THROW(createEmptyCatalogue(folder() / "notes"), base::RuntimeError);
    EXPECT_EQ(fs::file_size(folder() / "notes"), 4U);
}

TEST_F(EmptyCatalogue, IsAlone) {
    EXPECT_EQ(std::distance(fs::directory_iterator(folder()), fs::directory_iterator()), 1);
}

} // namespace
} // namespace discaro::catalogue
