#include "disc/folder/FolderMedium.h"

#include "base/RuntimeError.h"
#include "base/Sentence.h"
#include "disc/folder/FolderFile.h"
#include "disc/folder/FolderLink.h"
#include "disc/folder/FolderTree.h"
#include "disc/medium/ShownNames.h"
#include "disc/medium/VolumeSerial.h"
#include "disc/system/MountTable.h"
#include "disc/system/SystemErrors.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statfs.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <limits>
#include <string_view>
#include <system_error>
#include <utility>

namespace discaro::disc {

using base::Descriptor;
using base::ErrorNumber;
using base::RuntimeError;

namespace {

namespace fs = std::filesystem;

constexpr uint64_t kRootPlace = std::numeric_limits<uint64_t>::max();

// A file system in user space can go on for ever.
constexpr size_t kMostEntries = 5'000'000;

bool isDotName(std::string_view name) {
    return name == "." || name == "..";
}

bool isDirectory(int parent, const dirent& entry) {
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    struct stat facts {};
    return ::fstatat(parent, entry.d_name, &facts, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(facts.st_mode);
}

Listing readListing(DIR* stream, uint32_t number) {
    Listing listing;
    for (size_t count = 0; count < kMostEntries; ++count) {
        errno = 0;
        const dirent* entry = ::readdir(stream);
        if (!entry) {
            listing.damage = errno == 0 ? "" : systemText(errno);
            return listing;
        }
        if (isDotName(entry->d_name))
            continue;
        const bool directory = isDirectory(::dirfd(stream), *entry);
        auto& entries = directory ? listing.directories : listing.files;
        entries.push_back({shownName(entry->d_name), {number, 0, entry->d_name}, directory});
    }
    listing.damage = base::filledIn("more than %1 entries", {std::to_string(kMostEntries)});
    return listing;
}

bool hasLength(mode_t mode) {
    return S_ISREG(mode) || S_ISLNK(mode);
}

unsigned attributesOf(std::string_view name, mode_t mode, bool readOnly) {
    constexpr mode_t kAnyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    unsigned attributes = 0;
    if (readOnly || (mode & kAnyWrite) == 0)
        attributes |= attribute::kReadOnly;
    if (name.starts_with('.'))
        attributes |= attribute::kHidden;
    return attributes;
}

std::string fileSystemName(const fs::path& folder) {
    std::error_code failure;
    const auto path = fs::canonical(folder, failure);
    const auto mounts = readMounts();
    const auto* mount = failure ? nullptr : mountOf(mounts, path.native());
    if (!mount)
        return {};
    if (mount->type == "iso9660")
        return "CDFS";
    return mount->type == "udf" ? "UDF" : mount->type;
}

// 32-bit FNV-1a over the file system's number and the folder's. A file system without a number of its own gives
// its device's.
std::string serialOf(const struct statfs& system, const struct stat& folder) {
    uint32_t hash = 0x811C9DC5;
    const auto mix = [&hash](uint64_t value) {
        for (int shift = 0; shift < 64; shift += 8)
            hash = (hash ^ (value >> shift & 0xFF)) * 0x01000193;
    };
    const auto* words = system.f_fsid.__val;
    const bool numbered = words[0] != 0 || words[1] != 0;
    mix(numbered ? static_cast<uint32_t>(words[0]) : folder.st_dev);
    mix(numbered ? static_cast<uint32_t>(words[1]) : 0);
    mix(folder.st_ino);
    return serialText(hash);
}

} // namespace

std::string folderLabel(const fs::path& folder) {
    const auto& text = folder.native();
    const auto end = text.find_last_not_of('/');
    if (end == std::string::npos)
        return {};
    const auto begin = text.find_last_of('/', end) + 1;
    return shownName(std::string_view(text).substr(begin, end + 1 - begin));
}

FolderMedium::FolderMedium(fs::path root, Use use)
    : m_use(use)
    , m_tree(std::make_unique<FolderTree>(std::move(root))) {}

FolderMedium::~FolderMedium() = default;

VolumeFacts FolderMedium::facts() const {
    const Descriptor folder(::open(m_tree->root().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    struct stat own {};
    struct statfs system {};
    struct statvfs space {};
    if (!folder || ::fstat(folder.number(), &own) != 0 || ::fstatfs(folder.number(), &system) != 0 ||
        ::fstatvfs(folder.number(), &space) != 0)
        throw RuntimeError(ErrorNumber::DriveNotReady, systemText(errno));
    VolumeFacts facts;
    facts.label = folderLabel(m_tree->root());
    facts.fileSystem = fileSystemName(m_tree->root());
    facts.serial = serialOf(system, own);
    facts.isFolder = m_use == Use::Disc;
    if (facts.isFolder)
        return facts;
    facts.totalBytes = uint64_t{space.f_blocks} * space.f_frsize;
    const bool full = (space.f_flag & ST_RDONLY) != 0;
    facts.freeBytes = full ? 0 : uint64_t{space.f_bavail} * space.f_frsize;
    return facts;
}

Place FolderMedium::root() const {
    return {kRootPlace, 0, {}};
}

uint32_t FolderMedium::numberOf(const Place& directory) const {
    if (directory.number == kRootPlace)
        return FolderTree::kRoot;
    return m_tree->number(static_cast<uint32_t>(directory.number), directory.raw);
}

Listing FolderMedium::list(const Place& /*parent*/, const Place& directory) const {
    const uint32_t number = numberOf(directory);
    DIR* stream = m_tree->open(number);
    if (m_tree->isInsideItself(number))
        throw RuntimeError(ErrorNumber::DirectoryLoop);
    ::rewinddir(stream);
    return readListing(stream, number);
}

FileFacts FolderMedium::fileFacts(const Place& /*directory*/, const Place& file) const {
    const auto number = static_cast<uint32_t>(file.number);
    struct stat facts {};
    if (::fstatat(::dirfd(m_tree->open(number)), file.raw.c_str(), &facts, AT_SYMLINK_NOFOLLOW) != 0)
        throwSystemError(errno);
    if (S_ISLNK(facts.st_mode))
        if (const auto target = linked(number, file.raw, O_PATH))
            ::fstat(target.number(), &facts);
    return {hasLength(facts.st_mode) ? static_cast<uint64_t>(facts.st_size) : 0, facts.st_mtime,
            attributesOf(file.raw, facts.st_mode, m_tree->isReadOnly(number))};
}

std::unique_ptr<ByteSource> FolderMedium::open(const Place& /*directory*/, const Place& file) const {
    const auto number = static_cast<uint32_t>(file.number);
    if (auto own = openFolderFile(::dirfd(m_tree->open(number)), file.raw))
        return own;
    return folderFile(linked(number, file.raw, O_RDONLY));
}

// The regular file inside the folder that a link leads to; none for everything else.
Descriptor FolderMedium::linked(uint32_t directory, const std::string& name, int access) const {
    const auto above = m_tree->pathBelowRoot(directory);
    const auto link = above.empty() ? name : above + "/" + name;
    return openLinked({::dirfd(m_tree->open(FolderTree::kRoot)), m_tree->root().native()}, link, access);
}

} // namespace discaro::disc
