#include "disc/system/FileBytes.h"

#include "disc/medium/ShownNames.h"
#include "disc/system/KeptClosed.h"
#include "disc/system/SystemErrors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace discaro::disc {

namespace {

base::Descriptor openForReading(const std::filesystem::path& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) == 0 && isKeptClosed(facts)) {
        errno = EBUSY;
        return {};
    }
    return base::Descriptor(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
}

} // namespace

FileBytes::FileBytes(const std::filesystem::path& path)
    : m_file(openForReading(path)) {
    if (!m_file)
        throw base::RuntimeError(systemErrorNumber(errno), shownPath(path) + " (" + systemText(errno) + ")");
    const auto end = ::lseek(m_file.number(), 0, SEEK_END);
    m_size = end > 0 ? static_cast<uint64_t>(end) : 0;
}

FileBytes::FileBytes(base::Descriptor file, uint64_t size)
    : m_file(std::move(file))
    , m_size(size) {}

size_t FileBytes::read(uint64_t offset, std::span<std::byte> buffer) const {
    if (offset >= m_size)
        return 0;
    buffer = buffer.first(std::min<uint64_t>(buffer.size(), m_size - offset));
    size_t done = 0;
    while (done < buffer.size()) {
        const auto rest = buffer.subspan(done);
        const auto count = ::pread(m_file.number(), rest.data(), rest.size(), static_cast<off_t>(offset + done));
        if (count == 0)
            break;
        if (count > 0)
            done += static_cast<size_t>(count);
        else if (errno != EINTR)
            throwSystemError(errno);
    }
    return done;
}

} // namespace discaro::disc
