#pragma once

#include "db/sqlite/Connection.h"
#include "support/StatementTrace.h"

#include <string>
#include <string_view>
#include <vector>

namespace discaro::test {

// The storage engine's words on how it would run a statement, one line a step.
inline std::string queryPlan(db::Connection& connection, std::string_view sql) {
    constexpr int kDetail = 3;
    db::Statement statement(connection.session(), "EXPLAIN QUERY PLAN " + std::string(sql));
    std::string lines;
    while (statement.step())
        lines.append(statement.text(kDetail)).append("\n");
    return lines;
}

// The same of all queries that an action runs on the connection.
template <typename Action>
std::string queryPlansOf(db::Connection& connection, Action&& action) {
    std::vector<std::string> texts;
    {
        const StatementTrace trace(connection.handle());
        action();
        texts = trace.texts();
    }
    std::string plans;
    for (const std::string& text : texts)
        if (text.starts_with("SELECT"))
            plans += queryPlan(connection, text);
    return plans;
}

} // namespace discaro::test
