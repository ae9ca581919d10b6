#include "support/StatementTrace.h"

#include <sqlite3.h>

#include <algorithm>

namespace discaro::test {

StatementTrace::StatementTrace(sqlite3* connection)
    : m_connection(connection) {
    const auto note = [](unsigned, void* texts, void* statement, void* event) {
        const std::string text = sqlite3_sql(static_cast<sqlite3_stmt*>(statement));
        auto& known = *static_cast<std::vector<std::string>*>(texts);
        const bool ofTrigger = std::string_view(static_cast<const char*>(event)).starts_with("--");
        if (!ofTrigger && std::ranges::find(known, text) == known.end())
            known.push_back(text);
        return 0;
    };
    sqlite3_trace_v2(m_connection, SQLITE_TRACE_STMT, note, &m_texts);
}

StatementTrace::~StatementTrace() {
    sqlite3_trace_v2(m_connection, 0, nullptr, nullptr);
}

} // namespace discaro::test
