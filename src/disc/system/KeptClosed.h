#pragma once

#include <filesystem>

struct stat;

namespace discaro::disc {

// As long as it lives nobody in `disc` opens the contents of that file, by whatever name; its facts are told as ever.
// For a file that this process holds locks on: those of POSIX are given up when any descriptor of the file is closed.
class KeptClosed {
public:
    // A path that leads nowhere keeps nothing closed.
    explicit KeptClosed(const std::filesystem::path& path);
    ~KeptClosed();
    KeptClosed(const KeptClosed&) = delete;
    KeptClosed& operator=(const KeptClosed&) = delete;
};

// Whether the file that these facts are of is to stay closed.
bool isKeptClosed(const struct stat& facts);

} // namespace discaro::disc
