#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace discaro::disc {

// Bytes of one file, read where they are wanted. Nothing is copied out of the disc.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    virtual uint64_t size() const = 0;

    // Fills the buffer from the offset; returns the bytes read, fewer than asked only at the end of the file.
    // Throws base::RuntimeError: ReadFailure where the medium fails, DriveNotReady where it is gone.
    virtual size_t read(uint64_t offset, std::span<std::byte> buffer) const = 0;
};

// Attribute bits of a file, with the values that the catalogue's letters are made from.
namespace attribute {
constexpr unsigned kReadOnly = 1;
constexpr unsigned kHidden = 2;
constexpr unsigned kSystem = 4;
constexpr unsigned kDirectory = 16;
constexpr unsigned kArchive = 32;
} // namespace attribute

// Where an entry is on its medium; made and understood by the medium alone, cheap to copy.
struct Place {
    uint64_t number = 0; // an extent's sector, an index
    uint64_t detail = 0; // what else the medium needs to find the entry again
    std::string raw;     // the name as the medium has it: any bytes but NUL and '/'
};

struct Entry {
    std::string name; // shown: valid UTF-8, never empty, never a backslash
    Place place;
    bool isDirectory = false;
};

// What a directory holds, in the medium's own order, without "." and "..". A damaged directory gives what could be
// read of it.
struct Listing {
    std::vector<Entry> directories;
    std::vector<Entry> files;
    std::string damage; // empty, or what was wrong, for the log
};

struct FileFacts {
    uint64_t size = 0;
    std::time_t modified = 0;
    unsigned attributes = 0;
};

struct VolumeFacts {
    std::string label;
    std::string fileSystem; // "CDFS", "UDF", or the mounted file system's name
    std::string serial;     // "XXXX-XXXX" in hexadecimal
    uint64_t totalBytes = 0;
    uint64_t freeBytes = 0; // 0 on read-only media
    bool isFolder = false;  // totalBytes is 0: only a walk tells the size
};

// One readable file system: a folder, a disc image, a disc in a drive. Any of the functions may throw
// base::RuntimeError; none trusts what it reads.
class Medium {
public:
    virtual ~Medium() = default;

    virtual VolumeFacts facts() const = 0;

    // The root directory's place.
    virtual Place root() const = 0;

    // Throws when nothing of the directory can be read at all, and DriveNotReady when the disc goes meanwhile.
    virtual Listing list(const Place& parent, const Place& directory) const = 0;

    // The directory is the one that listed the file.
    virtual FileFacts fileFacts(const Place& directory, const Place& file) const = 0;
    virtual std::unique_ptr<ByteSource> open(const Place& directory, const Place& file) const = 0;
};

} // namespace discaro::disc
