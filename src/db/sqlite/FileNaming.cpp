#include "db/sqlite/FileNaming.h"

#include "base/RuntimeError.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
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

void sync(const fs::path& path, int flags) {
    if (::fsync(openFile(path, flags).number()) != 0)
        refuseFile(errno, path);
}

void syncFolder(const fs::path& file) {
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    sync(folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

void renameWithoutReplacing(const fs::path& from, const fs::path& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0)
        return;
    // Some file systems do not know how to refuse; there the look comes first.
    if (errno != EINVAL && errno != ENOSYS)
        refuseFile(errno, to);
    if (isTaken(to))
        refuseFile(EEXIST, to);
    if (::rename(from.c_str(), to.c_str()) != 0)
        refuseFile(errno, to);
}

} // namespace

void refuseFile(int error, const fs::path& path) {
    throw RuntimeError(errorNumberOfSystem(error), path.string() + ": " + std::generic_category().message(error));
}

base::Descriptor openFile(const fs::path& path, int flags) {
    base::Descriptor file(::open(path.c_str(), flags, 0666));
    if (!file)
        refuseFile(errno, path);
    return file;
}

bool isTaken(const fs::path& name) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(name, ignored));
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

} // namespace discaro::db
