#pragma once

#include <filesystem>
#include <ios>
#include <string>
#include <string_view>

namespace discaro::test {

// Makes a file of these bytes, in the place of what was there, with the folders above it; returns its path.
std::filesystem::path writeFile(const std::filesystem::path& path, std::string_view content = {});

// All that a file holds; nothing of one that is missing.
std::string readFile(const std::filesystem::path& path);

// Writes over a part of a file that exists.
void overwriteFile(const std::filesystem::path& path, std::streamoff at, std::string_view bytes);

// In a folder as long as it lives; then the process's current folder is the one before.
class InFolder {
public:
    explicit InFolder(const std::filesystem::path& folder)
        : m_before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~InFolder() { std::filesystem::current_path(m_before); }
    InFolder(const InFolder&) = delete;
    InFolder& operator=(const InFolder&) = delete;

private:
    std::filesystem::path m_before;
};

} // namespace discaro::test
