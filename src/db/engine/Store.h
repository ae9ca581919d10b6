#pragma once

#include "base/RuntimeError.h"
#include "db/engine/Participant.h"
#include "db/engine/Transaction.h"
#include "db/schema/FileFormat.h"
#include "db/schema/Table.h"
#include "db/sqlite/Connection.h"
#include "db/sqlite/StatementCache.h"

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace discaro::db {

// Which file it is, whatever the path: two paths to one file give the same.
struct FileIdentity {
    uint64_t device = 0;
    uint64_t inode = 0;
    bool operator==(const FileIdentity&) const = default;
};

// An open catalogue file: what all handles of the process on it share. Every write passes through write(), which
// brings it into the process's transaction.
class Store final : public Participant {
public:
    // The file must exist; throws as DBEngine::OpenDatabase does. The transaction is the process's, and outlives it.
    Store(std::string path, FileIdentity identity, const FileFormat& format, Transaction& transaction);
    ~Store();
    Store(const Store&) = delete;
    Store& operator=(const Store&) = delete;

    const std::string& path() const { return m_path; }
    const FileIdentity& identity() const { return m_identity; }
    bool updatable() const override { return m_updatable; }
    const Schema& schema() const { return m_schema; }
    Table& table(const TableDef& definition);
    Connection& connection() { return m_connection; }

    // A statement by its text, from the cache; and one that the caller keeps.
    std::shared_ptr<Statement> statement(std::string_view sql) { return m_statements.get(sql); }
    std::shared_ptr<Statement> prepare(std::string_view sql);
    // How SQLite would run a query without a limit, or whether one with a limit scans. Remembered by the text. Within a
    // ReadSpan or a transaction it holds as long as its lock; else another program may have changed the indexes since.
    const Plan& plan(const std::string& sql);

    // Runs a write: refuses it on a read-only file, on one that is no longer this store's and in a lost transaction,
    // makes it part of an open one, and undoes that whole transaction when the write fails in a way that leaves the
    // file in doubt.
    template <typename Write>
    auto write(Write&& write) {
        try {
            beginWrite();
            const auto result = write();
            endWrite();
            return result;
        } catch (const base::RuntimeError& error) {
            writeFailed(error);
            throw;
        }
    }

    // Whether the path still names the file and nobody has written over it; requireFile throws CatalogueReplaced.
    bool ownsFile() const { return m_connection.ownsFile(); }
    void requireFile() const { m_connection.requireFile(); }
    // The names by which handles have asked for it.
    void addName(std::string name) { m_names.insert(std::move(name)); }
    bool hasName(const std::string& name) const { return m_names.contains(name); }

    // Whether the process's transaction has been begun, with this file or without it.
    bool transactionOpen() const { return m_transaction.state() != Transaction::State::None; }

    // The parts of a transaction on this file.
    bool inTransaction() const override { return m_connection.inTransaction(); }
    void begin() override;
    void commit() override;
    void rollback() noexcept override;

    // Anything may have happened to the rows of any table.
    void noteAll();
    // The same, if another program has written to the file since the last call.
    void noteOthers();
    // The same within a ReadSpan, after which nothing that another program writes is seen any more.
    void noteVersion();

private:
    int64_t dataVersion();
    void forgetOldPlans();
    void beginWrite();
    void endWrite();
    void writeFailed(const base::RuntimeError& error);
    void removeIdleJournal();
    void readTables(const FileFormat& format);
    bool complete(const FileFormat& format);

    std::string m_path;
    FileIdentity m_identity;
    bool m_updatable;
    Transaction& m_transaction;
    Connection m_connection;
    StatementCache m_statements;
    std::unordered_map<std::string, Plan> m_plans;
    int64_t m_plansVersion = 0;
    Schema m_schema;
    std::vector<Table> m_tables; // in the schema's order
    int64_t m_dataVersion = 0;
    std::set<std::string> m_names;
    unsigned m_writes = 0; // in transactions
};

// Reads within its scope share one lock, which otherwise is taken and given back for each.
class ReadSpan {
public:
    explicit ReadSpan(Store& store);
    ~ReadSpan();
    ReadSpan(const ReadSpan&) = delete;
    ReadSpan& operator=(const ReadSpan&) = delete;

private:
    Store* m_store; // null within a transaction, which has its lock
};

} // namespace discaro::db
