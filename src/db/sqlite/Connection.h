#pragma once

#include "db/sqlite/FileGuard.h"
#include "db/sqlite/RowTaker.h"
#include "db/sqlite/SqliteError.h"
#include "db/sqlite/Statement.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct sqlite3;

namespace discaro::db {

// How SQLite would run a statement.
struct Plan {
    bool sorts = false; // rows are put into order, not just walked in it
    bool scans = false; // a table or an index is walked from end to end
};

// A connection to one database file. Handles of the catalogue share theirs through a Store; the
// parts that work on whole files open their own. Errors are base::RuntimeError.
class Connection {
public:
    enum class Mode { ReadOnly, ReadWrite };

    // Within its scope the SQL functions of RowTaker.h hand their rows to the taker.
    class TakerScope {
    public:
        TakerScope(Connection& connection, RowTaker& taker)
            : m_connection(connection) {
            connection.m_taker = &taker;
        }
        ~TakerScope() { m_connection.m_taker = nullptr; }
        TakerScope(const TakerScope&) = delete;
        TakerScope& operator=(const TakerScope&) = delete;

    private:
        Connection& m_connection;
    };

    // Opens a file that exists and sets the store's ways: rollback journal, a commit that no power cut takes back,
    // foreign keys, the cache, a short wait for other programs' locks, a distrust of what a damaged or foreign file
    // brings along. The file is not read yet. onFailure is the session's.
    Connection(const std::string& path, Mode mode, std::function<void(const base::RuntimeError&)> onFailure = {});
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Throws CatalogueReplaced when the path no longer names the file that was opened, or when somebody has written to
    // it past SQLite's locks. See db/sqlite/FileGuard.h.
    void requireFile() const;
    bool ownsFile() const;
    FileState fileState() const;
    // Throws so too when the file is lost while its pages are written; what is committed to a file that has gone by the
    // end is not in the one of its name.
    void commit();
    // Before a write: turns a file with a write-ahead log back to a rollback journal. CatalogueLocked when another
    // program keeps it from that.
    void useRollbackJournal();

    // Runs statements that give no rows, separated by semicolons.
    void execute(const std::string& sql);
    // The first cell of the first row; 0 or "" when there is none.
    int64_t number(std::string_view sql);
    std::string text(std::string_view sql);
    Plan plan(std::string_view sql);

    int64_t lastRowNumber() const;
    // Rows that the last statement changed itself, without cascades.
    int64_t changedRows() const;
    bool inTransaction() const;

    const Session& session() const { return m_session; }
    sqlite3* handle() const { return m_session.handle; }

    // The SQLite file layer for files opened from now on, by its registered name; empty for the
    // default one.
    static void useFileLayer(std::string name);
    // How long files opened from now on wait for another program's lock. 2000 ms unless set. Within a WaitOnce they
    // do so once in all.
    static void setLockWait(int milliseconds);

private:
    struct Closer {
        void operator()(sqlite3* handle) const;
    };

    void configure(Mode mode);

    int m_lockWait; // milliseconds
    RowTaker* m_taker = nullptr;
    Session m_session;
    std::unique_ptr<sqlite3, Closer> m_handle;
};

} // namespace discaro::db
