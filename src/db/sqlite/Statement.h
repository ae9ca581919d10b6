#pragma once

#include "db/value/Value.h"

#include <cstdint>
#include <span>
#include <string_view>

struct sqlite3_stmt;

namespace discaro::db {

struct Session;

// A prepared statement. Errors are base::RuntimeError. The session must outlive it.
class Statement {
public:
    enum class CellType { Null, Integer, Real, Text };

    // Throws SyntaxError for text that is not exactly one statement of the connection's schema.
    Statement(const Session& session, std::string_view sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    // Parameters count from 1. Text is not copied: it must stay until the statement is reset.
    void bindNull(int parameter);
    void bind(int parameter, int64_t number);
    void bind(int parameter, double number);
    void bind(int parameter, std::string_view text);
    void bind(int parameter, const Value& value);
    // Binds parameters 1 and on, as many as the statement has.
    void bindAll(std::span<const Value> values);

    // True when it stands on a row, false at the end.
    bool step();
    // A whole run of a statement that gives no rows and needs no values.
    void run();
    // Ends the run and with it the read lock. Must follow every run; StatementRun sees to it.
    void reset() noexcept;

    // Columns of the row, counted from 0. Bytes other than text count as text.
    int columns() const;
    CellType type(int column) const;
    int64_t integer(int column) const;
    double real(int column) const;
    // Valid until the next step or reset.
    std::string_view text(int column) const;

private:
    void check(int code) const;

    const Session* m_session;
    sqlite3_stmt* m_statement = nullptr;
};

// One run of a statement, from its first binding to the end of the scope.
class StatementRun {
public:
    explicit StatementRun(Statement& statement)
        : m_statement(statement) {}
    ~StatementRun() { m_statement.reset(); }
    StatementRun(const StatementRun&) = delete;
    StatementRun& operator=(const StatementRun&) = delete;

    Statement* operator->() const { return &m_statement; }
    Statement& operator*() const { return m_statement; }

private:
    Statement& m_statement;
};

} // namespace discaro::db
