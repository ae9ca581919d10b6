#include "disc/FolderFile.h"

#include "base/RuntimeError.h"
#include "disc/Descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace discaro::disc {

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
                throw RuntimeError(ErrorNumber::ReadFailure, systemText(errno));
        }
        return done;
    }

private:
    Descriptor m_descriptor;
    uint64_t m_size;
};

void requireRegular(const struct stat& facts) {
    if (!S_ISREG(facts.st_mode))
        throw RuntimeError(ErrorNumber::ReadFailure, "not a regular file");
}

} // namespace

std::string systemText(int error) {
    return std::generic_category().message(error);
}

void throwSystemError(int error) {
    const bool gone = error == ENOENT || error == ENOTDIR || error == ELOOP;
    throw RuntimeError(gone ? ErrorNumber::PathMissing : ErrorNumber::ReadFailure,
                       systemText(error));
}

std::unique_ptr<ByteSource> openFolderFile(int directory, const std::string& name) {
    struct stat facts {};
    if (::fstatat(directory, name.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        throwSystemError(errno);
    requireRegular(facts);
    constexpr int kFlags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
    Descriptor descriptor(::openat(directory, name.c_str(), kFlags));
    if (!descriptor || ::fstat(descriptor.number(), &facts) != 0)
        throwSystemError(errno);
    requireRegular(facts); // the name may have passed to something else in between
    return std::make_unique<FolderFile>(std::move(descriptor),
                                        static_cast<uint64_t>(facts.st_size));
}

} // namespace discaro::disc
