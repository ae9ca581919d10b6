#include "db/sqlite/StatementCache.h"

namespace discaro::db {

std::shared_ptr<Statement> StatementCache::get(std::string_view sql) {
    if (const auto known = m_places.find(sql); known != m_places.end()) {
        m_entries.splice(m_entries.begin(), m_entries, known->second);
        return known->second->statement;
    }
    auto statement = std::make_shared<Statement>(m_session, sql);
    m_entries.push_front({std::string(sql), statement});
    m_places.emplace(m_entries.front().sql, m_entries.begin());
    if (m_entries.size() > m_capacity) {
        m_places.erase(m_entries.back().sql);
        m_entries.pop_back();
    }
    return statement;
}

} // namespace discaro::db
