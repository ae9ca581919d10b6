#include "app/SingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>

namespace discaro::app {

SingleInstance::SingleInstance(const std::filesystem::path& markFile, const std::filesystem::path& folder)
    : m_marks{base::Descriptor(open(markFile.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600)),
              base::Descriptor(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))} {
    for (const auto& mark : m_marks)
        take(mark);
}

void SingleInstance::take(const base::Descriptor& mark) {
    if (mark && flock(mark.number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
        m_taken = true;
}

std::filesystem::path SingleInstance::defaultMark() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime != nullptr && access(runtime, W_OK) == 0)
        return std::filesystem::path(runtime) / "discaro.lock";
    std::error_code error;
    auto folder = std::filesystem::temp_directory_path(error);
    if (error)
        folder = "/tmp";
    return folder / ("discaro-" + std::to_string(getuid()) + ".lock");
}

} // namespace discaro::app
