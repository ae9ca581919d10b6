#pragma once

#include "db/Database.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

namespace discaro::db {

// A window's bound data source: a catalogue file, a table or query in it, and the recordset that
// its controls show. Without ReadOnly it is an updatable view (a dynaset) in which rows added
// through it appear at its end; with it, a snapshot. It owns its recordset and its database handle.
// One thread.
class DataSource {
public:
    DataSource() = default;
    ~DataSource();
    DataSource(const DataSource&) = delete;
    DataSource& operator=(const DataSource&) = delete;

    // Set before Refresh; they change nothing that is open.
    void SetDatabaseName(std::filesystem::path path) { m_databaseName = std::move(path); }
    void SetRecordSource(std::string source) { m_recordSource = std::move(source); }
    void SetReadOnly(bool readOnly) { m_readOnly = readOnly; }

    // Opens, or opens anew, the recordset and stands on its first row. A database handle still open
    // on the same path is kept. On failure (as OpenDatabase and OpenRecordset) an earlier recordset
    // stays as it was. References to the earlier recordset end here.
    void Refresh();

    // The recordset; HandleClosed when there has been none. After Close it is a closed one until
    // the next Refresh.
    db::Recordset& Recordset() const;
    bool HasRecordset() const { return m_recordset && m_recordset->IsOpen(); }
    // Takes another recordset in place of the present one, which is closed: a sorted copy.
    void SetRecordset(std::unique_ptr<db::Recordset> recordset);

    // The handle that Refresh opened, null before. Close on it closes the recordset too.
    std::shared_ptr<db::Database>& Database() { return m_database; }

    // Saves the edit in progress; when there is none it edits the current row, so that what the
    // bound controls hold is saved. Throws as Edit and Update do.
    void UpdateRecord();

    // Closes recordset and database handle, dropping an edit; also done at destruction. Twice is no
    // error.
    void Close();

    // For bound controls. beforeUpdate runs at the start of each save: write the controls' text
    // into the fields. repositioned runs when the row that the fields show may be another one: show
    // it. Both may be empty; they may not close or refresh the data source.
    std::function<void()> beforeUpdate;
    std::function<void()> repositioned;

private:
    bool keepsDatabase() const;

    std::filesystem::path m_databaseName;
    std::string m_recordSource;
    bool m_readOnly = false;
    std::shared_ptr<db::Database> m_database;
    std::filesystem::path m_openName;
    std::unique_ptr<db::Recordset> m_recordset;
};

} // namespace discaro::db
