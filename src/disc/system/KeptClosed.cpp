#include "disc/system/KeptClosed.h"

#include <sys/stat.h>

#include <algorithm>
#include <vector>

namespace discaro::disc {

namespace {

struct Entry {
    const KeptClosed* keeper;
    dev_t device;
    ino_t inode;
};

std::vector<Entry>& entries() {
    static std::vector<Entry> all;
    return all;
}

} // namespace

KeptClosed::KeptClosed(const std::filesystem::path& path) {
    struct stat facts {};
    if (::stat(path.c_str(), &facts) == 0)
        entries().push_back({this, facts.st_dev, facts.st_ino});
}

KeptClosed::~KeptClosed() {
    std::erase_if(entries(), [this](const Entry& entry) { return entry.keeper == this; });
}

bool isKeptClosed(const struct stat& facts) {
    return std::ranges::any_of(
        entries(), [&](const Entry& entry) { return entry.device == facts.st_dev && entry.inode == facts.st_ino; });
}

} // namespace discaro::disc
