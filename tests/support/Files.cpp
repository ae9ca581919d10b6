#include "support/Files.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace discaro::test {

std::filesystem::path writeFile(const std::filesystem::path& path, std::string_view content) {
    if (path.has_parent_path())
        std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary);
    if (!file.write(content.data(), static_cast<std::streamsize>(content.size())).flush())
        throw std::runtime_error(path.string() + " can't be written");
    return path;
}

std::string readFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void overwriteFile(const std::filesystem::path& path, std::streamoff at, std::string_view bytes) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    if (!file.seekp(at).write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush())
        throw std::runtime_error(path.string() + " can't be overwritten");
}

} // namespace discaro::test
