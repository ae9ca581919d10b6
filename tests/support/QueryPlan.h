#pragma once

#include "db/sqlite/Connection.h"

#include <string>
#include <string_view>

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

} // namespace discaro::test
