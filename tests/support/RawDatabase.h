#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

struct sqlite3;

namespace discaro::test {

// Another program's connection to a file: SQLite itself, without anything of the store around it. Throws
// std::runtime_error with SQLite's words when a statement fails.
class RawDatabase {
public:
    // Makes the file when it is missing. The file layer is named as SQLite knows it; empty for its own.
    explicit RawDatabase(const std::filesystem::path& path, const std::string& layer = {});
    ~RawDatabase();
    RawDatabase(const RawDatabase&) = delete;
    RawDatabase& operator=(const RawDatabase&) = delete;

    void execute(const std::string& sql);
    // The first cell of the first row, "" when there is none.
    std::string text(const std::string& sql);
    // Rows of a table, named as SQL has it.
    int64_t count(const std::string& table);

private:
    sqlite3* m_handle = nullptr;
};

} // namespace discaro::test
