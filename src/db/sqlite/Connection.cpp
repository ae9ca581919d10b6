#include "db/sqlite/Connection.h"

#include "db/sqlite/LikeFunction.h"
#include "db/sqlite/WaitOnce.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>

namespace discaro::db {

namespace {

constexpr int kLongestCell = 256 << 20; // bytes; a damaged file must not ask for more

std::string& fileLayer() {
    static std::string name;
    return name;
}

int& lockWait() {
    static int milliseconds = 2000;
    return milliseconds;
}

// Longer from time to time, as SQLite's own waits are.
int pauseBefore(int attempt) {
    static constexpr std::array kPauses = {1, 2, 5, 10, 15, 20, 25, 25, 25, 50, 50, 100};
    return kPauses[std::min(static_cast<size_t>(attempt), kPauses.size() - 1)];
}

// Called while another program holds a lock; 0 gives up.
int waitForLock(void* longest, int attempts) {
    if (!WaitOnce::mayWait())
        return 0;
    int waited = 0;
    for (int attempt = 0; attempt < attempts; ++attempt)
        waited += pauseBefore(attempt);
    const int left = *static_cast<const int*>(longest) - waited;
    if (left <= 0) {
        WaitOnce::waitedInVain();
        return 0;
    }
    sqlite3_sleep(std::min(pauseBefore(attempts), left));
    return 1;
}

void setOption(sqlite3* handle, int option, int value) {
    sqlite3_db_config(handle, option, value, nullptr);
}

} // namespace

void Connection::Closer::operator()(sqlite3* handle) const {
    sqlite3_close_v2(handle);
}

void Connection::useFileLayer(std::string name) {
    fileLayer() = std::move(name);
}

void Connection::setLockWait(int milliseconds) {
    lockWait() = milliseconds;
}

Connection::Connection(const std::string& path, Mode mode, std::function<void(const base::RuntimeError&)> onFailure)
    : m_lockWait(lockWait())
    , m_session{nullptr, std::move(onFailure)} {
    const int flags = SQLITE_OPEN_NOMUTEX | (mode == Mode::ReadOnly ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE);
    const int code = sqlite3_open_v2(path.c_str(), &m_session.handle, flags, guardedLayer(fileLayer()));
    m_handle.reset(m_session.handle);
    if (code != SQLITE_OK)
        raise(m_session, code);
    configure(mode);
}

Connection::~Connection() = default;

void Connection::configure(Mode mode) {
    sqlite3* const handle = m_session.handle;
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_handler(handle, &waitForLock, &m_lockWait);
    sqlite3_limit(handle, SQLITE_LIMIT_LENGTH, kLongestCell);
    setOption(handle, SQLITE_DBCONFIG_DEFENSIVE, 1);
    setOption(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0);
    setOption(handle, SQLITE_DBCONFIG_DQS_DML, 0);
    setOption(handle, SQLITE_DBCONFIG_DQS_DDL, 0);
    registerLikeFunction(handle);
    registerRowFunctions(handle, &m_taker);
    execute("PRAGMA synchronous=EXTRA; PRAGMA foreign_keys=ON; PRAGMA cache_size=-65536;"
            "PRAGMA temp_store=MEMORY; PRAGMA secure_delete=OFF; PRAGMA cell_size_check=ON");
    // This one reads the file, so what is wrong with the file shows here.
    if (mode == Mode::ReadWrite)
        execute("PRAGMA journal_mode=DELETE");
}

bool Connection::ownsFile() const {
    return db::ownsFile(handle());
}

void Connection::requireFile() const {
    if (!ownsFile())
        throw base::RuntimeError(base::ErrorNumber::CatalogueReplaced, sqlite3_db_filename(handle(), "main"));
}

FileState Connection::fileState() const {
    return stateOfFile(handle());
}

void Connection::commit() {
    requireFile();
    expectCommit(handle());
    execute("COMMIT");
    requireFile();
}

// Another program may have switched the file to a write-ahead log, and may have it open still.
void Connection::useRollbackJournal() {
    if (!hasWriteAheadLog(handle()))
        return;
    number("PRAGMA schema_version"); // SQLite takes notice of the log when it reads
    if (text("PRAGMA journal_mode=DELETE") != "delete")
        throw base::RuntimeError(base::ErrorNumber::CatalogueLocked, sqlite3_db_filename(handle(), "main"));
}

void Connection::execute(const std::string& sql) {
    const int code = sqlite3_exec(handle(), sql.c_str(), nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        raise(m_session, code);
}

int64_t Connection::number(std::string_view sql) {
    Statement statement(m_session, sql);
    return statement.step() ? statement.integer(0) : 0;
}

std::string Connection::text(std::string_view sql) {
    Statement statement(m_session, sql);
    return statement.step() ? std::string(statement.text(0)) : std::string();
}

// Read from the program that SQLite makes of the statement: the order of a statement without a limit is made by a
// sorter, and a step through the whole of a table or index carries the mark by which SQLite counts such steps.
Plan Connection::plan(std::string_view sql) {
    constexpr int kOpcode = 1;
    constexpr int kMark = 6; // "p5"
    Statement program(m_session, "EXPLAIN " + std::string(sql));
    Plan plan;
    while (program.step()) {
        const std::string_view opcode = program.text(kOpcode);
        const bool step = opcode == "Next" || opcode == "Prev";
        plan.sorts = plan.sorts || opcode == "SorterOpen";
        plan.scans = plan.scans || (step && program.integer(kMark) == SQLITE_STMTSTATUS_FULLSCAN_STEP);
    }
    return plan;
}

int64_t Connection::lastRowNumber() const {
    return sqlite3_last_insert_rowid(handle());
}

int64_t Connection::changedRows() const {
    return sqlite3_changes64(handle());
}

bool Connection::inTransaction() const {
    return sqlite3_get_autocommit(handle()) == 0;
}

} // namespace discaro::db
