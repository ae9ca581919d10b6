#pragma once

#include "base/Descriptor.h"
#include "disc/medium/Medium.h"

#include <filesystem>

namespace discaro::disc {

// The bytes of a regular file or of a block device. The file is open as long as the object lives.
class FileBytes : public ByteSource {
public:
    // Throws base::RuntimeError: PathMissing, DriveNotReady (a drive without a readable disc), ReadFailure (no right
    // to read, and whatever else the system says).
    explicit FileBytes(const std::filesystem::path& path);

    // The first bytes of what is open for reading; none need be open where the size is 0.
    FileBytes(base::Descriptor file, uint64_t size);

    // The size at the time of opening.
    uint64_t size() const override { return m_size; }
    // Throws as opening does.
    size_t read(uint64_t offset, std::span<std::byte> buffer) const override;

private:
    base::Descriptor m_file;
    uint64_t m_size = 0;
};

} // namespace discaro::disc
