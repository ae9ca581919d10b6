#pragma once

#include "disc/Medium.h"

#include <filesystem>

namespace discaro::disc {

// The bytes of a regular file or of a block device. The file is open as long as the object lives.
class FileBytes : public ByteSource {
public:
    // Throws base::RuntimeError: PathMissing, DriveNotReady (a drive without a readable disc), ReadFailure (no right
    // to read, and whatever else the system says).
    explicit FileBytes(const std::filesystem::path& path);
    ~FileBytes() override;
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    // The size at the time of opening.
    uint64_t size() const override { return m_size; }
    // Throws as the constructor does.
    size_t read(uint64_t offset, std::span<std::byte> buffer) const override;

private:
    int m_file;
    uint64_t m_size = 0;
};

} // namespace discaro::disc
