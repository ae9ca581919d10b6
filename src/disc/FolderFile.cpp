#include "disc/FolderFile.h"

#include "disc/KeptClosed.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace discaro::disc {

using base::Descriptor;
using base::ErrorNumber;
using base::RuntimeError;

namespace {

class FolderFile : public ByteSource {
public:
    FolderFile(Descriptor descriptor, uint64_t size)
        : m_descriptor(std::move(descriptor))
        , m_size(size) {}

    uint64_t size() const override { return m_size; }

    size_t read(uint64_t offset, std::span<std::byte> buffer) const override {
        if (offset >= m_size)
            return 0;
        buffer = buffer.first(std::min<uint64_t>(buffer.size(), m_size - offset));
        size_t done = 0;
        while (done < buffer.size()) {
            const auto rest = buffer.subspan(done);
            const auto count = ::pread(m_descriptor.number(), rest.data(), rest.size(),
                                       static_cast<off_t>(offset + done));
            if (count == 0)
                break;
            if (count > 0)
                done += static_cast<size_t>(count);
            else if (errno != EINTR)
                throwSystemError(errno);
        }
        return done;
    }

private:
    Descriptor m_descriptor;
    uint64_t m_size;
};

} // namespace

std::string systemText(int error) {
    return std::generic_category().message(error);
}

ErrorNumber systemErrorNumber(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        return ErrorNumber::PathMissing;
    case ENOMEDIUM:
    case ENXIO:
    case ENODEV:
        return ErrorNumber::DriveNotReady;
    default:
        return ErrorNumber::ReadFailure;
    }
}

void throwSystemError(int error) {
    throw RuntimeError(systemErrorNumber(error), systemText(error));
}

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
    return std::make_unique<FolderFile>(std::move(file),
                                        readable ? static_cast<uint64_t>(facts.st_size) : 0);
}

} // namespace discaro::disc
