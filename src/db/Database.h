#pragma once

#include "db/Recordset.h"
#include "db/engine/Handle.h"

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::db {

class Store;

// A handle on an open catalogue file. All handles of the process on one file, by whatever path,
// share one connection: they see each other's saved rows, and one transaction spans them. The file
// itself is closed, with nothing left beside it, when the last handle (Database or Recordset) on it
// goes. Got from DBEngine::OpenDatabase.
class Database final : public Handle, public std::enable_shared_from_this<Database> {
public:
    // Only the engine opens databases.
    class Key {
        friend class DBEngine;
        Key() = default;
    };
    enum class Binding { None, DataSource };
    Database(Key, std::shared_ptr<Store> store, std::string name, Binding binding);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    // Text is a table's name or one select statement of the query dialect. The recordset belongs to
    // the caller and keeps this Database alive. Throws SyntaxError, UnknownTable, UnknownField,
    // NotAllowed (a delete), FileMissing and the like for an "IN" clause's file, HandleClosed.
    std::unique_ptr<Recordset> OpenRecordset(std::string_view text);
    // The same as a snapshot: fixed row numbers, no changes.
    std::unique_ptr<Recordset> OpenSnapshot(std::string_view text);
    // The same as a dynaset, also for a table's name.
    std::unique_ptr<Recordset> OpenDynaset(std::string_view text);

    // Runs one delete statement of the dialect, with its cascades; returns the number of rows
    // deleted from the table named. Throws as OpenRecordset does, NotAllowed for a select,
    // CatalogueReadOnly, CatalogueReplaced, TransactionLost.
    int64_t Execute(std::string_view text);

    // Ends the handle and closes all recordsets opened through it. HandleClosed when it is closed
    // already.
    void Close() override;
    bool IsOpen() const { return m_store != nullptr; }
    // Whether no recordset is open through it.
    bool idle() const override { return m_recordsets.open.empty(); }

    // The path given to OpenDatabase, made absolute; also after Close.
    const std::string& Name() const { return m_name; }
    // False when the file or its folder is read-only. HandleClosed.
    bool Updatable() const;

    // The store behind the handle, for the parts of db that work on the file itself. HandleClosed.
    const std::shared_ptr<Store>& store() const override;

private:
    std::unique_ptr<Recordset> open(std::string_view text, RecordsetType ofTable, RecordsetType ofQuery);

    std::shared_ptr<Store> m_store;
    std::string m_name;
    RecordsetList m_recordsets;
};

} // namespace discaro::db
