#include "disc/FileBytes.h"

#include "base/RuntimeError.h"
#include "disc/FolderFile.h"
#include "disc/KeptClosed.h"
#include "disc/ShownNames.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace discaro::disc {

namespace {

int openForReading(const std::filesystem::path& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) == 0 && isKeptClosed(facts)) {
        errno = EBUSY;
        return -1;
    }
    return ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
}

} // namespace

FileBytes::FileBytes(const std::filesystem::path& path)
    : m_file(openForReading(path)) {
    if (m_file < 0)
        throw base::RuntimeError(systemErrorNumber(errno),
                                 shownPath(path) + " (" + systemText(errno) + ")");
    const auto end = ::lseek(m_file, 0, SEEK_END);
    m_size = end > 0 ? static_cast<uint64_t>(end) : 0;
}

FileBytes::~FileBytes() {
    ::close(m_file);
}

size_t FileBytes::read(uint64_t offset, std::span<std::byte> buffer) const {
    size_t done = 0;
    while (done < buffer.size() && offset + done < m_size) {
        const auto count = ::pread(m_file, buffer.data() + done, buffer.size() - done,
                                   static_cast<off_t>(offset + done));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throwSystemError(errno);
        if (count == 0)
            break;
        done += static_cast<size_t>(count);
    }
    return done;
}

} // namespace discaro::disc
