#include "db/Shelf.h"

#include <algorithm>
#include <cstdlib>

namespace discaro::db::test {

namespace fs = std::filesystem;

namespace {

constexpr int32_t kApplication = 0x5368656c;

} // namespace

Shelf::Shelf() {
    DBEngine::SetFormat(format());
    make("shelf.db");
}

FileFormat Shelf::format() {
    const TableDef discs{"Discs", {{"id number", FieldType::Integer}, {"prefered name", FieldType::Text}}};
    const TableDef directories{"Directories",
                               {{"drive id number", FieldType::Integer},
                                {"Parent id", FieldType::Text, true},
                                {"id number", FieldType::Text, true},
                                {"number of files", FieldType::Integer},
                                {"Size", FieldType::Double},
                                {"Total Size", FieldType::Double}}};
    const TableDef files{"Files",
                         {{"directory number", FieldType::Text, true},
                          {"id number", FieldType::Integer},
                          {"file name", FieldType::Text},
                          {"file size", FieldType::Double}}};
    const TableDef things{"Things",
                          {{"whole", FieldType::Integer},
                           {"fraction", FieldType::Double},
                           {"short text", FieldType::Text},
                           {"long text", FieldType::LongText},
                           {"flag", FieldType::Boolean},
                           {"day", FieldType::Date}}};
    return {kApplication, 3, {{discs, directories, files, things}}};
}

std::vector<std::string> Shelf::statements() {
    return {
        R"(CREATE TABLE Discs("id number" INTEGER, "prefered name" TEXT COLLATE NOCASE))",
        R"(CREATE UNIQUE INDEX "disc number" ON Discs("id number"))",
        R"(CREATE TABLE Directories("drive id number" INTEGER, "Parent id" TEXT COLLATE NOCASE,
           "id number" TEXT COLLATE NOCASE, "number of files" INTEGER, Size DOUBLE, "Total Size" DOUBLE))",
        R"(CREATE UNIQUE INDEX "directory number" ON Directories("id number"))",
        R"(CREATE INDEX "directory disc" ON Directories("drive id number"))",
        R"(CREATE TABLE Files("directory number" TEXT COLLATE NOCASE, "id number" INTEGER PRIMARY KEY,
           "file name" TEXT COLLATE NOCASE, "file size" DOUBLE))",
        R"(CREATE INDEX "file directory" ON Files("directory number"))",
        R"(CREATE INDEX "file name" ON Files("file name"))",
        R"(CREATE TABLE Things(whole INTEGER, fraction DOUBLE, "short text" TEXT COLLATE NOCASE,
           "long text" LONGTEXT COLLATE NOCASE, flag BOOLEAN, day DATE))",
        R"(CREATE TRIGGER "disc deleted" AFTER DELETE ON Discs BEGIN
           DELETE FROM Directories WHERE "drive id number" = OLD."id number"; END)",
        R"(CREATE TRIGGER "directory deleted" AFTER DELETE ON Directories BEGIN
           DELETE FROM Files WHERE "directory number" = OLD."id number"; END)",
    };
}

fs::path Shelf::make(const std::string& name) const {
    DBEngine::CreateDatabase(folder() / name, format(), statements());
    return folder() / name;
}

std::vector<std::string> Shelf::listing() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder()))
        names.push_back(entry.path().filename().string());
    std::ranges::sort(names);
    return names;
}

void Shelf::addDisc(int number, std::string_view name) const {
    const auto discs = open()->OpenRecordset("Discs");
    discs->AddNew();
    discs->Fields("id number") = number;
    discs->Fields("prefered name") = name;
    discs->Update();
}

void Shelf::addDirectories(const std::vector<std::string>& numbers) const {
    const auto directories = open()->OpenRecordset("Directories");
    for (const std::string& number : numbers) {
        directories->AddNew();
        directories->Fields("drive id number") = std::atoi(number.c_str() + 1);
        directories->Fields("id number") = number;
        directories->Update();
    }
}

void Shelf::addFiles(std::string_view directory, int count) const {
    const auto database = open();
    DBEngine::BeginTrans();
    const auto files = database->OpenRecordset("Files");
    for (int i = 0; i < count; ++i) {
        files->AddNew();
        files->Fields("directory number") = directory;
        files->Fields("file name") = "file" + std::to_string(i);
        files->Fields("file size") = i;
        files->Update();
    }
    DBEngine::CommitTrans();
}

int64_t Shelf::count(std::string_view table) const {
    return open()->OpenRecordset(table)->RecordCount();
}

int errorOf(const std::function<void()>& action) {
    try {
        action();
        return 0;
    } catch (const base::RuntimeError& error) {
        return error.number();
    }
}

std::vector<std::string> texts(Recordset& recordset, std::string_view field) {
    std::vector<std::string> texts;
    for (; !recordset.Eof(); recordset.MoveNext())
        texts.push_back(recordset(field).Text());
    return texts;
}

std::vector<std::string> allTexts(Recordset& recordset, std::string_view field) {
    recordset.MoveFirst();
    return texts(recordset, field);
}

} // namespace discaro::db::test
