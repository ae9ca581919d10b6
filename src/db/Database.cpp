#include "db/Database.h"

#include "base/RuntimeError.h"
#include "base/Text.h"
#include "db/dialect/Dialect.h"
#include "db/engine/Engine.h"
#include "db/engine/Store.h"
#include "db/rows/AggregateSource.h"
#include "db/rows/OpenRows.h"

#include <algorithm>
#include <system_error>

namespace discaro::db {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

struct Located {
    std::shared_ptr<Store> store;
    Query query;
};

// The file that an IN clause names is the one of that name in the process's current folder.
std::shared_ptr<Store> storeNamed(const std::string& file) {
    std::error_code error;
    const auto folder = std::filesystem::current_path(error);
    if (error)
        throw RuntimeError(ErrorNumber::FileMissing, file);
    return Engine::instance().open(folder / file);
}

// The statement, and the store that it speaks of.
Located parse(const std::shared_ptr<Store>& own, std::string_view text) {
    Query query = parseStatement(text, own->schema());
    if (query.externalFile.empty())
        return {own, std::move(query)};
    auto store = storeNamed(query.externalFile);
    if (store != own)
        query = parseStatement(text, store->schema());
    return {std::move(store), std::move(query)};
}

RowQuery rowsOf(Store& store, Query& query) {
    Table& table = store.table(*query.table);
    const bool whole = query.columns == table.layout->columns;
    auto layout = whole ? table.layout : partLayout(*query.table, std::move(query.columns));
    return {&table,
            std::move(layout),
            std::move(query.where),
            std::move(query.order),
            std::move(query.bindings),
            std::move(query.condition)};
}

std::string sumsSql(const Query& query) {
    std::string sql = "SELECT 0";
    for (const Query::Sum& sum : query.aggregates)
        sql.append(",").append(sum.sql);
    sql.append(" FROM ").append(quotedName(query.table->name));
    if (!query.where.empty())
        sql.append(" WHERE ").append(query.where);
    return sql;
}

std::shared_ptr<const RecordLayout> layoutOf(const Query& query) {
    TableDef shown;
    shown.fields.reserve(query.aggregates.size());
    for (const Query::Sum& sum : query.aggregates)
        shown.fields.push_back({sum.name, sum.type});
    return std::make_shared<RecordLayout>(std::move(shown), std::vector<int>());
}

std::unique_ptr<RowSource> sumsOf(Store& store, const Query& query) {
    return std::make_unique<AggregateSource>(store, layoutOf(query), sumsSql(query), query.bindings);
}

} // namespace

Database::Database(Key, std::shared_ptr<Store> store, std::string name, Binding binding)
    : m_store(std::move(store))
    , m_name(std::move(name)) {
    Engine::instance().handleOpened(*this, binding == Binding::DataSource);
}

Database::~Database() {
    if (IsOpen())
        Engine::instance().handleClosed(*this);
}

void Database::Close() {
    store();
    // Recordsets keep this alive; the last of them must not take it away under our feet.
    const auto self = shared_from_this();
    while (!idle())
        m_recordsets.open.back()->Close();
    Engine::instance().handleClosed(*this);
    m_store.reset();
}

const std::shared_ptr<Store>& Database::store() const {
    if (m_store == nullptr)
        throw RuntimeError(ErrorNumber::HandleClosed);
    return m_store;
}

bool Database::Updatable() const {
    return store()->updatable();
}

std::unique_ptr<Recordset> Database::OpenRecordset(std::string_view text) {
    return open(text, RecordsetType::Table, RecordsetType::Dynaset);
}

std::unique_ptr<Recordset> Database::OpenSnapshot(std::string_view text) {
    return open(text, RecordsetType::Snapshot, RecordsetType::Snapshot);
}

std::unique_ptr<Recordset> Database::OpenDynaset(std::string_view text) {
    return open(text, RecordsetType::Dynaset, RecordsetType::Dynaset);
}

std::unique_ptr<Recordset> Database::open(std::string_view text, RecordsetType ofTable, RecordsetType ofQuery) {
    auto [source, query] = parse(store(), text);
    if (query.kind == Query::Kind::Delete)
        throw RuntimeError(ErrorNumber::NotAllowed, "a delete statement opens no recordset");
    const bool isTable = query.table == source->schema().find(base::trimBlanks(text));
    const bool isSum = query.kind == Query::Kind::Aggregate;
    const RecordsetType type = isSum ? RecordsetType::Snapshot : isTable ? ofTable : ofQuery;
    auto rows =
        isSum ? sumsOf(*source, query) : openRows(*source, rowsOf(*source, query), type == RecordsetType::Snapshot);
    return std::make_unique<Recordset>(Recordset::Key(),
                                       std::shared_ptr<RecordsetList>(shared_from_this(), &m_recordsets),
                                       std::move(source), std::move(rows), type);
}

int64_t Database::Execute(std::string_view text) {
    const auto [source, query] = parse(store(), text);
    if (query.kind != Query::Kind::Delete)
        throw RuntimeError(ErrorNumber::NotAllowed, "only a delete statement can be executed");
    std::string sql = "DELETE FROM " + quotedName(query.table->name);
    if (!query.where.empty())
        sql.append(" WHERE ").append(query.where);
    return source->write([&, &store = *source, &bindings = query.bindings] {
        const auto statement = store.statement(sql);
        const StatementRun run(*statement);
        run->bindAll(bindings);
        run->step();
        store.noteAll();
        return store.connection().changedRows();
    });
}

} // namespace discaro::db
