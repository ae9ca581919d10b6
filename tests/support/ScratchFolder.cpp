#include "support/ScratchFolder.h"

#include "base/Descriptor.h"
#include "support/Files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <system_error>

namespace discaro::test {

namespace fs = std::filesystem;

namespace {

fs::path folderOf(ScratchFolder::Place place) {
    const fs::path inMemory = "/dev/shm";
    const bool memory = place == ScratchFolder::Place::Memory && ::access(inMemory.c_str(), W_OK) == 0;
    return memory ? inMemory : fs::temp_directory_path();
}

} // namespace

ScratchFolder::ScratchFolder(Place place) {
    std::string pattern = (folderOf(place) / "discaro-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    m_path = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    fs::remove_all(m_path, ignored);
}

fs::path ScratchFolder::write(const fs::path& name, std::string_view content) const {
    return writeFile(m_path / name, content);
}

fs::path ScratchFolder::makeFolder(const fs::path& name) const {
    fs::create_directories(m_path / name);
    return m_path / name;
}

void ScratchFolder::makeDeep(const std::string& name, size_t levels, const std::string& file) const {
    base::Descriptor at(::open(m_path.c_str(), O_RDONLY | O_DIRECTORY));
    for (size_t level = 0; level < levels; ++level) {
        ::mkdirat(at.number(), name.c_str(), 0777);
        at = base::Descriptor(::openat(at.number(), name.c_str(), O_RDONLY | O_DIRECTORY));
    }
    const base::Descriptor written(::openat(at.number(), file.c_str(), O_WRONLY | O_CREAT, 0666));
    if (!written)
        throw std::runtime_error("no deep folder");
}

} // namespace discaro::test
