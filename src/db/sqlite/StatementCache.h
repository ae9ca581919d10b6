#pragma once

#include "db/sqlite/Statement.h"

#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>

namespace discaro::db {

// Prepared statements of one connection by their text; of those not used lately the oldest goes. A statement handed
// out stays valid for its holder when it leaves the cache.
class StatementCache {
public:
    // The session must outlive it.
    explicit StatementCache(const Session& session, size_t capacity = 64)
        : m_session(session)
        , m_capacity(capacity) {}

    std::shared_ptr<Statement> get(std::string_view sql);

private:
    struct Entry {
        std::string sql;
        std::shared_ptr<Statement> statement;
    };

    const Session& m_session;
    size_t m_capacity;
    std::list<Entry> m_entries;
    std::unordered_map<std::string_view, std::list<Entry>::iterator> m_places; // keys lie in m_entries
};

} // namespace discaro::db
