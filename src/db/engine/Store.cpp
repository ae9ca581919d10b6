#include "db/engine/Store.h"

#include "db/engine/SaveGroup.h"
#include "db/sqlite/SchemaReader.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <system_error>

namespace discaro::db {

namespace {

constexpr size_t kMostPlans = 256;

bool writable(const std::filesystem::path& path) {
    return ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0;
}

// The journal of a change lies beside the file, so the folder must take new files too.
bool canBeChanged(const std::filesystem::path& path) {
    return writable(path) && writable(path.parent_path());
}

// The number behind the highest that any row has had, where no row has it; else the engine's own choice is that number.
std::string freeNumber(const Schema& schema, const Table& table, const std::string& numberTable) {
    const TableDef* numbers = schema.find(numberTable);
    if (table.numberField < 0 || numbers == nullptr || numbers->find(table.definition->name) < 0)
        return "NULL";
    const std::string name = quotedName(table.definition->name);
    return "(SELECT " + name + "+1 FROM " + quotedName(numberTable) + " WHERE " + name +
           ">=ifnull((SELECT max(rowid) FROM " + name + "),0))";
}

// A file some of whose parts can't be made because of its rows.
struct Refusal {
    FileIdentity file;
    FileState state;
    bool operator==(const Refusal&) const = default;
};

// The last one that was met.
std::optional<Refusal>& refusedByRows() {
    static std::optional<Refusal> last;
    return last;
}

// Makes the part; whether the rows stand against it.
bool isRefusedByRows(Connection& connection, const FormatPart& part) {
    try {
        connection.execute(part.statement);
        return false;
    } catch (const base::RuntimeError& error) {
        return error.is(base::ErrorNumber::RuleViolated);
    }
}

} // namespace

Store::Store(std::string path, FileIdentity identity, const FileFormat& format, Transaction& transaction)
    : m_path(std::move(path))
    , m_identity(identity)
    , m_updatable(canBeChanged(m_path))
    , m_transaction(transaction)
    , m_connection(m_path, m_updatable ? Connection::Mode::ReadWrite : Connection::Mode::ReadOnly,
                   [&transaction](const base::RuntimeError& error) { transaction.failureSeen(error); })
    , m_statements(m_connection.session()) {
    removeIdleJournal();
    readTables(format);
    if (m_updatable && complete(format))
        readTables(format);
}

Store::~Store() = default;

// A process that died before its journal was worth anything leaves it behind, and SQLite passes over it. What holds
// something has been undone by the time the lock is granted.
void Store::removeIdleJournal() {
    const std::filesystem::path journal = m_path + "-journal";
    std::error_code ignored;
    if (!m_updatable || !std::filesystem::exists(journal, ignored))
        return;
    base::skipErrors([&] {
        m_connection.execute("BEGIN EXCLUSIVE");
        std::filesystem::remove(journal, ignored);
        m_connection.execute("ROLLBACK");
    });
}

void Store::readTables(const FileFormat& format) {
    StoredSchema stored = readSchema(m_connection);
    requireFormat(m_connection, stored.schema, format);
    m_schema = std::move(stored.schema);
    m_tables.resize(m_schema.tables.size());
    for (size_t i = 0; i < m_tables.size(); ++i) {
        Table& table = m_tables[i];
        table.definition = &m_schema.tables[i];
        table.numberField = stored.numberFields[i];
        table.freeNumber = freeNumber(m_schema, table, format.numberTable);
        table.layout = wholeLayout(*table.definition);
    }
}

// What can't be made (a lock, a full disk, rows that break the rule of an index) stays missing. The rows of a large
// table take a while to say so: as long as nobody changes the file they are not asked again.
bool Store::complete(const FileFormat& format) {
    const auto isMissing = [this](const FormatPart& part) {
        bool missing = false;
        base::skipErrors([&] { missing = m_connection.number(part.missing) != 0; });
        return missing;
    };
    const auto missing = std::ranges::count_if(format.parts, isMissing);
    if (missing == 0 || refusedByRows() == Refusal{m_identity, m_connection.fileState()})
        return false;
    std::ptrdiff_t refused = 0;
    base::skipErrors([&] {
        m_connection.execute("BEGIN IMMEDIATE");
        for (const FormatPart& part : format.parts)
            if (m_connection.inTransaction() && isMissing(part))
                refused += isRefusedByRows(m_connection, part) ? 1 : 0;
        m_connection.execute("COMMIT");
    });
    rollback();
    if (refused > 0 && refused == std::ranges::count_if(format.parts, isMissing))
        refusedByRows() = Refusal{m_identity, m_connection.fileState()};
    return true;
}

Table& Store::table(const TableDef& definition) {
    return m_tables[static_cast<size_t>(&definition - m_schema.tables.data())];
}

std::shared_ptr<Statement> Store::prepare(std::string_view sql) {
    return std::make_shared<Statement>(m_connection.session(), sql);
}

const Plan& Store::plan(const std::string& sql) {
    if (m_connection.inTransaction())
        forgetOldPlans();
    if (const auto known = m_plans.find(sql); known != m_plans.end())
        return known->second;
    if (m_plans.size() >= kMostPlans)
        m_plans.clear();
    return m_plans.emplace(sql, m_connection.plan(sql)).first->second;
}

// A statement notices a changed schema when it reads; the plan of one is of the schema that was read last.
void Store::forgetOldPlans() {
    const auto reading = m_statements.get("SELECT 1 FROM sqlite_schema WHERE rowid=1");
    StatementRun(*reading)->step();
    const int64_t version = dataVersion();
    if (version != m_plansVersion)
        m_plans.clear();
    m_plansVersion = version;
}

// In a transaction a look at the file now and then is enough for the user to hear of it in time; the commit looks
// again.
void Store::beginWrite() {
    constexpr unsigned kLookAt = 64;
    if (!m_updatable)
        throw base::RuntimeError(base::ErrorNumber::CatalogueReadOnly, m_path);
    if (SaveGroup* const group = SaveGroup::current())
        group->giveWay();
    m_transaction.join(*this);
    const bool alone = !m_connection.inTransaction();
    if (alone || m_writes++ % kLookAt == 0)
        requireFile();
    if (alone)
        m_connection.useRollbackJournal();
}

void Store::endWrite() {
    if (!m_connection.inTransaction())
        requireFile();
}

// In a file that somebody has written over anything can fail; the reason is told, not what it led to.
void Store::writeFailed(const base::RuntimeError& error) {
    const bool known = error.is(base::ErrorNumber::TransactionLost);
    if (known || m_connection.ownsFile() || error.is(base::ErrorNumber::CatalogueReplaced))
        return m_transaction.writeFailed(*this, error);
    const base::RuntimeError reason(base::ErrorNumber::CatalogueReplaced, m_path);
    m_transaction.writeFailed(*this, reason);
    throw reason;
}

void Store::begin() {
    if (!m_updatable)
        throw base::RuntimeError(base::ErrorNumber::CatalogueReadOnly, m_path);
    requireFile();
    m_connection.useRollbackJournal();
    // Exclusive: a reader that would keep the commit from succeeding is noticed now, not after hours of writing.
    m_connection.execute("BEGIN EXCLUSIVE");
    noteVersion(); // from here on nothing that was read before another program's writing counts
    for (Table& table : m_tables)
        table.numberFree = false;
}

void Store::commit() {
    m_connection.commit();
}

void Store::rollback() noexcept {
    // An error here means that SQLite has rolled back already, or will when the file is opened next.
    base::skipErrors([this] {
        if (m_connection.inTransaction())
            m_connection.execute("ROLLBACK");
    });
    noteAll();
}

void Store::noteAll() {
    for (Table& table : m_tables)
        table.noteAll();
}

void Store::noteOthers() {
    if (!m_connection.inTransaction())
        noteVersion();
}

int64_t Store::dataVersion() {
    const auto statement = m_statements.get("PRAGMA data_version");
    const StatementRun run(*statement);
    return run->step() ? run->integer(0) : 0;
}

void Store::noteVersion() {
    const int64_t version = dataVersion();
    if (version != m_dataVersion)
        noteAll();
    m_dataVersion = version;
}

ReadSpan::ReadSpan(Store& store)
    : m_store(store.connection().inTransaction() ? nullptr : &store) {
    if (m_store != nullptr)
        store.statement("BEGIN")->run();
}

ReadSpan::~ReadSpan() {
    if (m_store != nullptr)
        base::skipErrors([this] { m_store->statement("COMMIT")->run(); });
}

} // namespace discaro::db
