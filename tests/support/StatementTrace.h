#pragma once

#include <string>
#include <vector>

struct sqlite3;

namespace discaro::test {

// The statements that a connection begins to run while this lives, each once, in the order of their first runs. What
// triggers run is left out. One trace to a connection.
class StatementTrace {
public:
    explicit StatementTrace(sqlite3* connection);
    ~StatementTrace();
    StatementTrace(const StatementTrace&) = delete;
    StatementTrace& operator=(const StatementTrace&) = delete;

    const std::vector<std::string>& texts() const { return m_texts; }

private:
    sqlite3* m_connection;
    std::vector<std::string> m_texts;
};

} // namespace discaro::test
