#include "support/MediumWalk.h"

#include "base/RuntimeError.h"

#include <algorithm>

namespace discaro::test {

namespace {

class Walker {
public:
    Walker(const disc::Medium& medium, size_t limit)
        : m_medium(medium)
        , m_limit(limit) {}

    Walk run() {
        const auto root = m_medium.root();
        visit("", root, root);
        // Directories are appended behind those that hold them, so this goes through all of them.
        for (size_t i = 0; i < m_walk.entries.size() && m_walk.entries.size() < m_limit; ++i)
            if (m_walk.entries[i].isDirectory) {
                const auto entry = m_walk.entries[i];
                visit(entry.path + "/", entry.parent, entry.place);
            }
        return std::move(m_walk);
    }

private:
    void visit(const std::string& prefix, const disc::Place& parent, const disc::Place& place) {
        try {
            const auto listing = m_medium.list(parent, place);
            if (!listing.damage.empty())
                m_walk.damage.push_back(prefix + ": " + listing.damage);
            for (const auto& entry : listing.directories)
                m_walk.entries.push_back({prefix + entry.name, true, place, entry.place, {}});
            for (const auto& entry : listing.files)
                addFile(prefix, place, entry);
        } catch (const base::RuntimeError& error) {
            m_walk.damage.push_back(prefix + ": " + error.description());
        }
    }

    void addFile(const std::string& prefix, const disc::Place& place, const disc::Entry& entry) {
        WalkedEntry file{prefix + entry.name, false, place, entry.place, {}};
        base::skipErrors([&] { file.facts = m_medium.fileFacts(place, entry.place); });
        m_walk.entries.push_back(std::move(file));
    }

    const disc::Medium& m_medium;
    size_t m_limit;
    Walk m_walk = {};
};

} // namespace

std::vector<std::string> Walk::paths() const {
    std::vector<std::string> result;
    for (const auto& entry : entries)
        result.push_back(entry.path + (entry.isDirectory ? "/" : ""));
    std::ranges::sort(result);
    return result;
}

const WalkedEntry* Walk::find(std::string_view path) const {
    const auto found = std::ranges::find(entries, path, &WalkedEntry::path);
    return found == entries.end() ? nullptr : &*found;
}

Walk walk(const disc::Medium& medium, size_t limit) {
    return Walker(medium, limit).run();
}

std::string contentOf(const disc::Medium& medium, const WalkedEntry& file) {
    const auto source = medium.open(file.parent, file.place);
    std::string content;
    std::string piece;
    for (size_t length = 1; content.size() < source->size(); length = length * 3 % 100003) {
        piece.resize(length);
        const auto got = source->read(content.size(), std::as_writable_bytes(std::span(piece)));
        content += piece.substr(0, got);
        if (got < length)
            break;
    }
    return content;
}

} // namespace discaro::test
