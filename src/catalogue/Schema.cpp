#include "catalogue/Schema.h"

#include "catalogue/Names.h"
#include "db/sqlite/SchemaReader.h"

#include <initializer_list>
#include <string_view>

namespace discaro::catalogue {

namespace {

using db::FieldType;
using db::TableDef;

struct Field {
    std::string_view name;
    FieldType type;
    bool ascii = false;
};
using Fields = std::initializer_list<Field>;

// The numbers of directories, in their own table and wherever one refers to them: the program composes them of letters
// and digits.
constexpr Field directoryKey(std::string_view name) {
    return {name, FieldType::Text, true};
}

TableDef tableOf(std::string_view name, Fields fields) {
    TableDef table{std::string(name), {}};
    for (const Field& field : fields)
        table.fields.push_back({std::string(field.name), field.type, field.ascii});
    return table;
}

TableDef driveTable() {
    using namespace drive;
    return tableOf(kDrive, {{kIdNumber, FieldType::Integer},
                            {kDriveLetter, FieldType::Text},
                            {kVolumeName, FieldType::Text},
                            {kSerialNumber, FieldType::Text},
                            {kPreferedName, FieldType::Text},
                            {kFileSystem, FieldType::Text},
                            {kTotalSize, FieldType::Double},
                            {kFreeSize, FieldType::Double},
                            {kComments, FieldType::LongText},
                            {kAutorun, FieldType::LongText}});
}

TableDef directoriesTable() {
    using namespace directories;
    return tableOf(kDirectories, {{kDriveIdNumber, FieldType::Integer},
                                  directoryKey(kParentId),
                                  directoryKey(kIdNumber),
                                  {kDirectoryName, FieldType::Text},
                                  {kDirectoryPath, FieldType::Text},
                                  {kNumberOfFiles, FieldType::Integer},
                                  {kNumberOfSubdirectories, FieldType::Integer},
                                  {kSize, FieldType::Double},
                                  {kTotalSize, FieldType::Double},
                                  {kTotalNumberOfFiles, FieldType::Integer},
                                  {kTotalNumberOfSubdirectories, FieldType::Integer},
                                  {kComments, FieldType::LongText}});
}

TableDef filesTable() {
    using namespace files;
    return tableOf(kFiles, {directoryKey(kDirectoryNumber),
                            {kIdNumber, FieldType::Integer},
                            {kFileName, FieldType::Text},
                            {kFileExtension, FieldType::Text},
                            {kFileSize, FieldType::Double},
                            {kAttributes, FieldType::Text},
                            {kFileDate, FieldType::Text},
                            {kFileTime, FieldType::Text},
                            {kCompanyName, FieldType::Text},
                            {kDescription, FieldType::Text},
                            {kCopyright, FieldType::Text},
                            {kProductName, FieldType::Text},
                            {kProductVersion, FieldType::Text},
                            {kInternalName, FieldType::Text},
                            {kOriginalFileName, FieldType::Text},
                            {kNumberOfIcons, FieldType::Integer},
                            {kComments, FieldType::LongText}});
}

TableDef progTagTable() {
    using namespace progTag;
    return tableOf(kProgTag, {{kIdNumber, FieldType::Integer},
                              {kProgID, FieldType::Text},
                              {kProgName, FieldType::Text},
                              {kProgVersion, FieldType::Text},
                              {kDescription, FieldType::Text},
                              directoryKey(kDirectoryNumber),
                              {kFileId, FieldType::Text},
                              {kVendor, FieldType::Text},
                              {kVendorHomePage, FieldType::Text},
                              {kType, FieldType::Text},
                              {kCategory, FieldType::Text},
                              {kSubcategory, FieldType::Text},
                              {kOS, FieldType::Text},
                              {kSerialNumber, FieldType::Text},
                              {kCDKey, FieldType::Text},
                              {kCDNumber, FieldType::Integer},
                              {kPreferredName, FieldType::Text},
                              {kFileName, FieldType::Text},
                              {kDirectoryPath, FieldType::Text},
                              {kNumberOfCDs, FieldType::Text},
                              {kTotalSize, FieldType::Text},
                              {kTotalFiles, FieldType::Text},
                              {kComments, FieldType::LongText}});
}

TableDef master() {
    using namespace masterTable;
    return tableOf(kMasterTable, {{kScannedCdRoms, FieldType::Integer},
                                  {kRealCdRomsScanned, FieldType::Integer},
                                  {kTotalNumberOfDirectories, FieldType::Integer},
                                  {kTotalNumberOfFiles, FieldType::Integer},
                                  {kTotalSize, FieldType::Double},
                                  {kScanError, FieldType::Text},
                                  {kEncryption, FieldType::Boolean},
                                  {kLastCompact, FieldType::Date},
                                  {kLastRepair, FieldType::Date},
                                  {kLastBackup, FieldType::Date}});
}

// A field for each table that the database numbers.
TableDef rowNumbers() {
    return tableOf(kRowNumbers, {{kFiles, FieldType::Integer}, {kProgTag, FieldType::Integer}});
}

std::string name(std::string_view text) {
    return db::quotedName(text);
}

// File and tag numbers come from the database. Discs and directories have numbers of their own; these tables keep
// the order of insertion by the hidden row number, since a disc added later may have a lower number.
bool databaseNumbers(const TableDef& table) {
    return table.name == kFiles || table.name == kProgTag;
}

std::string createTable(const TableDef& table) {
    std::string columns;
    for (const db::FieldDef& field : table.fields) {
        const bool text = field.type == FieldType::Text || field.type == FieldType::LongText;
        const bool number = databaseNumbers(table) && field.name == files::kIdNumber;
        columns.append(columns.empty() ? "" : ", ")
            .append(name(field.name))
            .append(" ")
            .append(db::declaredType(field.type))
            .append(text ? " COLLATE NOCASE" : "")
            .append(number ? " PRIMARY KEY" : "");
    }
    return "CREATE TABLE " + name(table.name) + " (" + columns + ")";
}

using Part = db::FormatPart;

std::string noneNamed(std::string_view kind, const std::string& object) {
    return "SELECT NOT EXISTS (SELECT 1 FROM sqlite_schema WHERE type='" + std::string(kind) + "' AND name='" + object +
           "' COLLATE NOCASE)";
}

Part index(std::string_view kind, std::string_view table, std::string_view field) {
    const std::string object = std::string(table).append(" ").append(field);
    return {noneNamed("index", object),
            "CREATE " + std::string(kind) + " " + name(object) + " ON " + name(table) + " (" + name(field) + ")"};
}

Part cascade(std::string_view from, std::string_view key, std::string_view to, std::string_view reference) {
    const std::string object = std::string(from).append(" deleted");
    return {noneNamed("trigger", object), "CREATE TRIGGER " + name(object) + " AFTER DELETE ON " + name(from) +
                                              " BEGIN DELETE FROM " + name(to) + " WHERE " + name(reference) +
                                              " = OLD." + name(key) + "; END"};
}

// Written when the highest of the numbers not yet noted goes; for the rest of a deletion the condition is all it costs.
Part notedNumbers(std::string_view table, std::string_view number) {
    const std::string object = std::string(table).append(" numbered");
    const std::string noted = name(table) + " FROM " + name(kRowNumbers);
    return {noneNamed("trigger", object), "CREATE TRIGGER " + name(object) + " BEFORE DELETE ON " + name(table) +
                                              " WHEN OLD." + name(number) + " > (SELECT " + noted + ") BEGIN UPDATE " +
                                              name(kRowNumbers) + " SET " + name(table) + " = (SELECT max(" +
                                              name(number) + ") FROM " + name(table) + "); END"};
}

Part oneRow(std::string_view table, const std::string& values) {
    return {"SELECT NOT EXISTS (SELECT 1 FROM " + name(table) + ")",
            "INSERT INTO " + name(table) + " VALUES (" + values + ")"};
}

} // namespace

db::Schema catalogueSchema() {
    return {{driveTable(), directoriesTable(), filesTable(), progTagTable(), master()}};
}

std::vector<db::FormatPart> catalogueParts() {
    return {
        // A disc by its number; the lowest free number; the end of the cascade.
        index("UNIQUE INDEX", kDrive, drive::kIdNumber),
        // A directory by its number; the directories below one, as a prefix of the number.
        index("UNIQUE INDEX", kDirectories, directories::kIdNumber),
        // The directories of a disc; a disc's first directory; the cascade from Drive.
        index("INDEX", kDirectories, directories::kDriveIdNumber),
        // The children of a directory.
        index("INDEX", kDirectories, directories::kParentId),
        // The files of a directory; the cascade from Directories.
        index("INDEX", kFiles, files::kDirectoryNumber),
        // Searches by name, and the order in which they list.
        index("INDEX", kFiles, files::kFileName),
        // Triggers and not foreign keys: those cost a look-up in every insert, 12 % of a scan's inserts, and work only
        // for programs that switch them on.
        cascade(kDrive, drive::kIdNumber, kDirectories, directories::kDriveIdNumber),
        cascade(kDirectories, directories::kIdNumber, kFiles, files::kDirectoryNumber),
        oneRow(kMasterTable, "0, 0, 0, 0, 0, 'no error', 0, NULL, NULL, NULL"),
        // SQLite's own way to give no number twice, AUTOINCREMENT, costs 15 % of the inserts.
        {noneNamed("table", std::string(kRowNumbers)), createTable(rowNumbers())},
        oneRow(kRowNumbers, "0, 0"),
        notedNumbers(kFiles, files::kIdNumber),
        notedNumbers(kProgTag, progTag::kIdNumber),
    };
}

std::vector<std::string> schemaStatements() {
    std::vector<std::string> statements;
    for (const TableDef& table : catalogueSchema().tables)
        statements.push_back(createTable(table));
    for (const db::FormatPart& part : catalogueParts())
        statements.push_back(part.statement);
    return statements;
}

} // namespace discaro::catalogue
