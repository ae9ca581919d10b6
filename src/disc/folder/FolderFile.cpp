#include "disc/folder/FolderFile.h"

#include "disc/system/FileBytes.h"
#include "disc/system/KeptClosed.h"
#include "disc/system/SystemErrors.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace discaro::disc {

using base::Descriptor;

std::unique_ptr<ByteSource> openFolderFile(int directory, const std::string& name) {
    struct stat facts {};
    if (::fstatat(directory, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        throwSystemError(errno);
    if (!S_ISREG(facts.st_mode))
        return nullptr;
    if (isKeptClosed(facts))
        return folderFile({});
    constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
    Descriptor file(::openat(directory, name.c_str(), kFlags));
    if (!file)
        throwSystemError(errno);
    return folderFile(std::move(file));
}

std::unique_ptr<ByteSource> folderFile(Descriptor file) {
    struct stat facts {};
    if (file && ::fstat(file.number(), &facts) != 0)
        throwSystemError(errno);
    // The name may have passed to something else before it was opened.
    const bool readable = file && S_ISREG(facts.st_mode);
    return std::make_unique<FileBytes>(std::move(file), readable ? static_cast<uint64_t>(facts.st_size) : 0);
}

} // namespace discaro::disc
