#include "support/RawDatabase.h"

#include <sqlite3.h>

#include <stdexcept>

namespace discaro::test {

RawDatabase::RawDatabase(const std::filesystem::path& path, const std::string& layer) {
    if (sqlite3_open_v2(path.c_str(), &m_handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE,
                        layer.empty() ? nullptr : layer.c_str()) != SQLITE_OK) {
        sqlite3_close(m_handle);
        throw std::runtime_error("not opened");
    }
}

RawDatabase::~RawDatabase() {
    sqlite3_close(m_handle);
}

void RawDatabase::execute(const std::string& sql) {
    if (sqlite3_exec(m_handle, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_handle));
}

std::string RawDatabase::text(const std::string& sql) {
    std::string found;
    const auto take = [](void* into, int, char** cells, char**) {
        if (cells[0] != nullptr)
            *static_cast<std::string*>(into) = cells[0];
        return 1;
    };
    const int code = sqlite3_exec(m_handle, sql.c_str(), take, &found, nullptr);
    if (code != SQLITE_OK && code != SQLITE_ABORT)
        throw std::runtime_error(sqlite3_errmsg(m_handle));
    return found;
}

int64_t RawDatabase::count(const std::string& table) {
    return std::stoll(text("SELECT count(*) FROM " + table));
}

} // namespace discaro::test
