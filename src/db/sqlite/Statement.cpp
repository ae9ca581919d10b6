#include "db/sqlite/Statement.h"

#include "db/sqlite/SqliteError.h"

#include <sqlite3.h>

#include <algorithm>

namespace discaro::db {

namespace {

[[noreturn]] void refuseText(const Session& session, int code) {
    if ((code & 0xff) == SQLITE_ERROR)
        throw base::RuntimeError(base::ErrorNumber::SyntaxError, sqlite3_errmsg(session.handle));
    raise(session, code);
}

bool onlyBlanks(const char* begin, const char* end) {
    return std::all_of(begin, end, [](char c) { return c == ' ' || c == ';' || c == '\n'; });
}

} // namespace

Statement::Statement(const Session& session, std::string_view sql)
    : m_session(&session) {
    const char* tail = nullptr;
    const int code = sqlite3_prepare_v3(session.handle, sql.data(), static_cast<int>(sql.size()),
                                        SQLITE_PREPARE_PERSISTENT, &m_statement, &tail);
    if (code != SQLITE_OK)
        refuseText(session, code);
    if (m_statement != nullptr && onlyBlanks(tail, sql.data() + sql.size()))
        return;
    sqlite3_finalize(m_statement);
    throw base::RuntimeError(base::ErrorNumber::SyntaxError, "one statement expected");
}

Statement::~Statement() {
    sqlite3_finalize(m_statement);
}

void Statement::check(int code) const {
    if (code != SQLITE_OK) [[unlikely]]
        raise(*m_session, code);
}

void Statement::bindNull(int parameter) {
    check(sqlite3_bind_null(m_statement, parameter));
}

void Statement::bind(int parameter, int64_t number) {
    check(sqlite3_bind_int64(m_statement, parameter, number));
}

void Statement::bind(int parameter, double number) {
    check(sqlite3_bind_double(m_statement, parameter, number));
}

void Statement::bind(int parameter, std::string_view text) {
    // A null pointer would bind null instead of the empty text.
    const char* data = text.data() == nullptr ? "" : text.data();
    check(sqlite3_bind_text64(m_statement, parameter, data, text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void Statement::bind(int parameter, const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value))
        bind(parameter, std::string_view(*text));
    else if (const auto* integer = std::get_if<int64_t>(&value))
        bind(parameter, *integer);
    else if (const auto* real = std::get_if<double>(&value))
        bind(parameter, *real);
    else if (const auto* boolean = std::get_if<bool>(&value))
        bind(parameter, int64_t{*boolean});
    else
        bindNull(parameter);
}

void Statement::bindAll(std::span<const Value> values) {
    const int wanted = sqlite3_bind_parameter_count(m_statement);
    for (int at = 0; at < std::min(wanted, static_cast<int>(values.size())); ++at)
        bind(at + 1, values[static_cast<size_t>(at)]);
}

bool Statement::step() {
    const int code = sqlite3_step(m_statement);
    if (code == SQLITE_ROW)
        return true;
    if (code != SQLITE_DONE) [[unlikely]]
        raise(*m_session, code);
    return false;
}

void Statement::run() {
    const StatementRun run(*this);
    step();
}

void Statement::reset() noexcept {
    sqlite3_reset(m_statement);
}

int Statement::columns() const {
    return sqlite3_column_count(m_statement);
}

Statement::CellType Statement::type(int column) const {
    switch (sqlite3_column_type(m_statement, column)) {
    case SQLITE_INTEGER:
        return CellType::Integer;
    case SQLITE_FLOAT:
        return CellType::Real;
    case SQLITE_NULL:
        return CellType::Null;
    default:
        return CellType::Text;
    }
}

int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(m_statement, column);
}

double Statement::real(int column) const {
    return sqlite3_column_double(m_statement, column);
}

std::string_view Statement::text(int column) const {
    // sqlite3_column_blob leaves text as it is, with any NUL inside, and does not convert bytes.
    const void* data = sqlite3_column_blob(m_statement, column);
    if (data == nullptr)
        return {};
    return {static_cast<const char*>(data), static_cast<size_t>(sqlite3_column_bytes(m_statement, column))};
}

} // namespace discaro::db
