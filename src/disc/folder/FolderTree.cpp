#include "disc/folder/FolderTree.h"

#include "base/Descriptor.h"
#include "base/RuntimeError.h"
#include "disc/system/SystemErrors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <functional>
#include <system_error>
#include <utility>
#include <vector>

namespace discaro::disc {

using base::ErrorNumber;
using base::RuntimeError;

namespace {

// Enough for going down and up again without opening anything twice, few enough for a drive on every letter.
constexpr size_t kKeptOpen = 16;

constexpr int kDirectoryFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

DIR* streamOf(base::Descriptor descriptor) {
    DIR* stream = descriptor ? ::fdopendir(descriptor.number()) : nullptr;
    if (stream)
        descriptor.release();
    return stream;
}

} // namespace

size_t FolderTree::KeyRules::operator()(Key key) const {
    constexpr size_t kSpread = 0x9E3779B97F4A7C15;
    return std::hash<std::string_view>()(key.name) ^ (key.parent + 1) * kSpread;
}

FolderTree::FolderTree(std::filesystem::path root)
    : m_root(std::move(root))
    , m_nodes(1)
    , m_numbers(0, KeyRules{&m_nodes}, KeyRules{&m_nodes}) {}

uint32_t FolderTree::number(uint32_t parent, std::string_view name) {
    if (parent >= m_nodes.size())
        throw RuntimeError(ErrorNumber::PathMissing);
    if (const auto found = m_numbers.find(Key{parent, name}); found != m_numbers.end())
        return *found;
    const auto added = static_cast<uint32_t>(m_nodes.size());
    m_nodes.push_back({parent, false, {}, std::string(name)});
    m_numbers.insert(added);
    return added;
}

DIR* FolderTree::open(uint32_t directory) {
    if (directory >= m_nodes.size())
        throw RuntimeError(ErrorNumber::PathMissing);
    std::vector<uint32_t> closed;
    DIR* stream = alreadyOpen(directory);
    for (uint32_t at = directory; !stream; stream = alreadyOpen(at)) {
        if (at == kRoot) {
            stream = keepOpen(kRoot, openRoot());
            break;
        }
        closed.push_back(at);
        at = m_nodes[at].parent;
    }
    for (auto at = closed.rbegin(); at != closed.rend(); ++at)
        stream = keepOpen(*at, openIn(stream, m_nodes[*at].name));
    return stream;
}

DIR* FolderTree::alreadyOpen(uint32_t directory) {
    for (auto at = m_open.begin(); at != m_open.end(); ++at) {
        if (at->number == directory) {
            m_open.splice(m_open.begin(), m_open, at);
            return at->stream.get();
        }
    }
    return nullptr;
}

DIR* FolderTree::keepOpen(uint32_t directory, Stream stream) {
    note(directory, stream.get());
    m_open.push_front({directory, std::move(stream)});
    if (m_open.size() > kKeptOpen)
        m_open.pop_back();
    return m_open.front().stream.get();
}

FolderTree::Stream FolderTree::openRoot() const {
    Stream stream(streamOf(base::Descriptor(::open(m_root.c_str(), kDirectoryFlags))));
    if (!stream)
        throw RuntimeError(ErrorNumber::DriveNotReady, systemText(errno));
    return stream;
}

FolderTree::Stream FolderTree::openIn(DIR* parent, const std::string& name) const {
    Stream stream(streamOf(base::Descriptor(::openat(::dirfd(parent), name.c_str(), kDirectoryFlags | O_NOFOLLOW))));
    if (!stream)
        throwSystemError(errno);
    return stream;
}

void FolderTree::note(uint32_t directory, DIR* stream) {
    struct stat facts {};
    if (::fstat(::dirfd(stream), &facts) != 0)
        throwSystemError(errno);
    auto& node = m_nodes[directory];
    const auto& parent = m_nodes[node.parent];
    node.identity = {facts.st_dev, facts.st_ino};
    if (directory != kRoot && parent.identity.device == facts.st_dev) {
        node.readOnly = parent.readOnly;
        return;
    }
    struct statvfs system {};
    node.readOnly = ::fstatvfs(::dirfd(stream), &system) == 0 && (system.f_flag & ST_RDONLY) != 0;
}

std::string FolderTree::pathBelowRoot(uint32_t directory) const {
    std::string path;
    for (uint32_t at = directory; at != kRoot; at = m_nodes[at].parent)
        path.insert(0, path.empty() ? m_nodes[at].name : m_nodes[at].name + "/");
    return path;
}

bool FolderTree::isInsideItself(uint32_t directory) const {
    const Identity identity = m_nodes[directory].identity;
    for (uint32_t at = directory; at != kRoot;) {
        at = m_nodes[at].parent;
        if (m_nodes[at].identity == identity)
            return true;
    }
    return false;
}

} // namespace discaro::disc
