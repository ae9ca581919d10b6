#pragma once

#include "base/Descriptor.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

namespace discaro::test {

// A folder of a test's own, gone with the object.
class ScratchFolder {
public:
    ScratchFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "discaro-XXXXXX").string();
        if (!::mkdtemp(pattern.data()))
            throw std::runtime_error("no temporary folder");
        m_path = pattern;
    }
    ~ScratchFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

    std::filesystem::path write(const std::filesystem::path& name, std::string_view content = {}) const {
        std::ofstream(m_path / name, std::ios::binary) << content;
        return m_path / name;
    }

    std::filesystem::path makeFolder(const std::filesystem::path& name) const {
        std::filesystem::create_directories(m_path / name);
        return m_path / name;
    }

    // Folders inside each other, deeper than a path of the system may be long; a file in the innermost one.
    void makeDeep(const std::string& name, size_t levels, const std::string& file) const {
        base::Descriptor at(::open(m_path.c_str(), O_RDONLY | O_DIRECTORY));
        for (size_t level = 0; level < levels; ++level) {
            ::mkdirat(at.number(), name.c_str(), 0777);
            at = base::Descriptor(::openat(at.number(), name.c_str(), O_RDONLY | O_DIRECTORY));
        }
        const base::Descriptor written(::openat(at.number(), file.c_str(), O_WRONLY | O_CREAT, 0666));
        if (!written)
            throw std::runtime_error("no deep folder");
    }

private:
    std::filesystem::path m_path;
};

} // namespace discaro::test
