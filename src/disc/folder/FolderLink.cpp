#include "disc/folder/FolderLink.h"

#include "disc/system/KeptClosed.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <optional>
#include <utility>

namespace discaro::disc {

using base::Descriptor;

namespace {

// As many as the system follows.
constexpr int kMostLinks = 40;

Descriptor openBeneath(int folder, const std::string& path, int flags) {
    open_how how{};
    how.flags = static_cast<uint64_t>(flags | O_CLOEXEC);
    how.resolve = RESOLVE_BENEATH | RESOLVE_NO_MAGICLINKS;
    return Descriptor(static_cast<int>(::syscall(SYS_openat2, folder, path.c_str(), &how, sizeof how)));
}

std::string linkText(int folder, const std::string& path) {
    std::array<char, PATH_MAX> text{};
    const Descriptor link = openBeneath(folder, path, O_PATH | O_NOFOLLOW);
    const auto length = link ? ::readlinkat(link.number(), "", text.data(), text.size()) : -1;
    return length > 0 ? std::string(text.data(), static_cast<size_t>(length)) : std::string();
}

// Where a link leads, as a path below the folder. The system takes an absolute link for one that leaves the folder,
// even if it comes back to it.
std::optional<std::string> oneStep(const LinkGround& ground, const std::string& link) {
    const auto text = linkText(ground.folder, link);
    if (text.empty())
        return std::nullopt;
    if (!text.starts_with('/'))
        return link.substr(0, link.rfind('/') + 1) + text;
    const auto root = ground.path.ends_with('/') ? ground.path : ground.path + "/";
    if (!text.starts_with(root))
        return std::nullopt;
    return text.substr(root.size());
}

bool mayBeOpened(int file, int access) {
    struct stat facts {};
    return ::fstat(file, &facts) == 0 && S_ISREG(facts.st_mode) && (access == O_PATH || !isKeptClosed(facts));
}

} // namespace

Descriptor openLinked(const LinkGround& ground, std::string link, int access) {
    for (int links = 0; links < kMostLinks; ++links) {
        if (auto target = openBeneath(ground.folder, link, O_PATH)) {
            if (!mayBeOpened(target.number(), access))
                return {};
            if (access == O_PATH)
                return target;
            return openBeneath(ground.folder, link, access | O_NONBLOCK | O_NOCTTY);
        }
        if (errno != EXDEV)
            return {};
        auto next = oneStep(ground, link);
        if (!next)
            return {};
        link = std::move(*next);
    }
    return {};
}

} // namespace discaro::disc
