#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>

namespace discaro::test {

// A folder of a test's own, gone with the object.
class ScratchFolder {
public:
    // In memory, where the system has such a place, every row saved by itself need not wait for the disk.
    enum class Place { Disk, Memory };

    explicit ScratchFolder(Place place = Place::Disk);
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return m_path; }

    std::filesystem::path write(const std::filesystem::path& name, std::string_view content = {}) const;
    std::filesystem::path makeFolder(const std::filesystem::path& name) const;

    // Folders inside each other, deeper than a path of the system may be long; a file in the innermost one.
    void makeDeep(const std::string& name, size_t levels, const std::string& file) const;

private:
    std::filesystem::path m_path;
};

} // namespace discaro::test
