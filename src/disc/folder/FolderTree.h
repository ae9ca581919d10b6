#pragma once

#include <dirent.h>
#include <sys/types.h>

#include <cstdint>
#include <deque>
#include <filesystem>
#include <list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>

namespace discaro::disc {

// Opens the directories below a folder, one path component at a time, so that a tree of any depth and names of any
// bytes can be reached. Each directory that was asked for has a number for as long as the object lives; the few
// used last stay open. For one thread.
class FolderTree {
public:
    static constexpr uint32_t kRoot = 0;

    // What tells a directory from all others of the computer.
    struct Identity {
        dev_t device = 0;
        ino_t inode = 0;
        bool operator==(const Identity&) const = default;
    };

    explicit FolderTree(std::filesystem::path root);
    FolderTree(const FolderTree&) = delete;
    FolderTree& operator=(const FolderTree&) = delete;

    const std::filesystem::path& root() const { return m_root; }

    // The number of the directory of this name in a numbered one, the same each time. Nothing is opened.
    // Throws PathMissing when the parent was never numbered.
    uint32_t number(uint32_t parent, std::string_view name);

    // The open directory, good until another one is asked for. Symbolic links below the root are not followed.
    // Throws base::RuntimeError: DriveNotReady when the root can't be opened, PathMissing when the directory is
    // gone or was never numbered, ReadFailure for all else.
    DIR* open(uint32_t directory);

    // The path below the root, with slashes between the names; empty for the root itself.
    std::string pathBelowRoot(uint32_t directory) const;

    // Of a directory that was opened once: whether its file system can't be written.
    bool isReadOnly(uint32_t directory) const { return m_nodes[directory].readOnly; }

    // Of a directory that was opened once: whether one of those above it is the same directory.
    bool isInsideItself(uint32_t directory) const;

    // What open() notes about a directory.
    void setIdentity(uint32_t directory, Identity identity) { m_nodes[directory].identity = identity; }

private:
    struct Node {
        uint32_t parent = 0;
        bool readOnly = false;
        Identity identity;
        std::string name;
    };

    struct Key {
        uint32_t parent;
        std::string_view name;
        bool operator==(const Key&) const = default;
    };

    // Finds a node's number by its parent and name, which stand in the node only.
    struct KeyRules {
        using is_transparent = void;
        const std::deque<Node>* nodes;

        Key keyOf(uint32_t number) const { return {(*nodes)[number].parent, (*nodes)[number].name}; }
        static Key keyOf(Key key) { return key; }
        size_t operator()(uint32_t number) const { return (*this)(keyOf(number)); }
        size_t operator()(Key key) const;
        template <typename Left, typename Right>
        bool operator()(Left left, Right right) const {
            return keyOf(left) == keyOf(right);
        }
    };

    struct CloseDirectory {
        void operator()(DIR* stream) const { ::closedir(stream); }
    };
    using Stream = std::unique_ptr<DIR, CloseDirectory>;

    struct OpenDirectory {
        uint32_t number;
        Stream stream;
    };

    DIR* alreadyOpen(uint32_t directory);
    DIR* keepOpen(uint32_t directory, Stream stream);
    Stream openRoot() const;
    Stream openIn(DIR* parent, const std::string& name) const;
    void note(uint32_t directory, DIR* stream);

    std::filesystem::path m_root;
    std::deque<Node> m_nodes;
    std::unordered_set<uint32_t, KeyRules, KeyRules> m_numbers;
    std::list<OpenDirectory> m_open; // the one used last in front
};

} // namespace discaro::disc
