#include "db/DatabaseFile.h"

#include "base/Descriptor.h"
#include "base/RuntimeError.h"
#include "db/Connection.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <string_view>
#include <system_error>

namespace discaro::db {

namespace {

using base::ErrorNumber;
using base::RuntimeError;
namespace fs = std::filesystem;

ErrorNumber errorNumberOfSystem(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return ErrorNumber::PathMissing;
    case EEXIST:
        return ErrorNumber::NotAllowed;
    case EACCES:
    case EPERM:
    case EROFS:
        return ErrorNumber::CatalogueReadOnly;
    case ENOSPC:
    case EDQUOT:
        return ErrorNumber::DiskFull;
    default:
        return ErrorNumber::StorageFailure;
    }
}

[[noreturn]] void refuse(int error, const fs::path& path) {
    throw RuntimeError(errorNumberOfSystem(error),
                       path.string() + ": " + std::generic_category().message(error));
}

base::Descriptor opened(const fs::path& path, int flags) {
    base::Descriptor file(::open(path.c_str(), flags, 0666));
    if (!file)
        refuse(errno, path);
    return file;
}

void sync(const fs::path& path, int flags) {
    if (::fsync(opened(path, flags).number()) != 0)
        refuse(errno, path);
}

// A file that goes away again, its journal too, unless it has been given its final name.
class Draft {
public:
    explicit Draft(const fs::path& name)
        : m_path(name.string() + ".new") {
        remove(); // what an interrupted creation left
        opened(m_path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC);
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

void syncFolder(const fs::path& file) {
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    sync(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

// Also by a link that leads nowhere.
bool isTaken(const fs::path& name) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(name, ignored));
}

void renameWithoutReplacing(const fs::path& from, const fs::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return;
    // Some file systems do not know how to refuse; there the look comes first.
    if (errno != EINVAL && errno != ENOSYS)
        refuse(errno, to);
    if (isTaken(to))
        refuse(EEXIST, to);
    if (::rename(from.c_str(), to.c_str()) != 0)
        refuse(errno, to);
}

} // namespace

void createDatabaseFile(const fs::path& path, const FileFormat& format,
                        std::span<const std::string> statements) {
    std::error_code error;
    const fs::path name = fs::absolute(path, error);
    if (error)
        refuse(error.value(), path);
    if (isTaken(name))
        refuse(EEXIST, name);
    const Draft draft(name);
    fill(draft.path(), format, statements);
    publishFile(draft.path(), name);
}

void publishFile(const fs::path& finished, const fs::path& name) {
    sync(finished, O_RDONLY | O_CLOEXEC);
    if (!isTaken(name))
        setJournalAside(name);
    renameWithoutReplacing(finished, name);
    syncFolder(name);
}

void setJournalAside(const fs::path& database) {
    const fs::path journal = database.string() + "-journal";
    for (int number = 1; isTaken(journal); ++number) {
        const fs::path aside = journal.string() + "." + std::to_string(number);
        if (!isTaken(aside))
            renameWithoutReplacing(journal, aside);
    }
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
    return std::string_view(head.data(), kMagic.size()) == kMagic &&
           id == static_cast<uint32_t>(format.applicationId);
}

} // namespace discaro::db
