#include "support/MemoryMedium.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <limits>
#include <map>
#include <stdexcept>
#include <utility>

namespace discaro::test {

using base::RuntimeError;
using disc::Place;

namespace {

constexpr std::time_t kFixedTime = 1040812215; // 25 December 2002, 10:30:15 UTC

constexpr size_t kKinds = 4;

template <typename Change>
MemoryNode changed(const MemoryNode& node, Change change) {
    MemoryNode copy = node;
    change(copy);
    return copy;
}

// The n-th to the m-th call of one kind.
struct FailingCalls {
    int first = 0;
    int last = 0;
    ErrorNumber number{};
};

} // namespace

struct MemoryMedium::State {
    struct Stored {
        MemoryNode node; // without children
        std::string path;
        std::vector<uint64_t> children;
    };

    std::vector<Stored> nodes;
    std::map<std::string, uint64_t> directories; // by path
    std::array<int, kKinds> calls{};
    std::vector<std::pair<Asked, FailingCalls>> failing;
    int callsLeft = std::numeric_limits<int>::max();
    std::vector<std::string> listed;

    // Level by level, for trees may be deep.
    void store(MemoryNode root) {
        struct Waiting {
            MemoryNode node;
            std::string path;
            std::optional<uint64_t> parent;
        };
        std::deque<Waiting> waiting;
        waiting.push_back({std::move(root), "", std::nullopt});
        for (; !waiting.empty(); waiting.pop_front()) {
            auto& [node, path, parent] = waiting.front();
            const uint64_t number = nodes.size();
            if (parent)
                nodes[*parent].children.push_back(number);
            if (node.isDirectory)
                directories[path] = number;
            for (auto& child : std::exchange(node.children, {})) {
                auto childPath = path + "\\" + child.name;
                waiting.push_back({std::move(child), std::move(childPath), number});
            }
            nodes.push_back({std::move(node), std::move(path), {}});
        }
    }

    Place placeOf(uint64_t number) const {
        const auto& node = nodes[number].node;
        const auto meant = node.standsFor ? directories.at(*node.standsFor) : number;
        return {meant, 0, node.name};
    }

    void requirePresent() const {
        if (callsLeft <= 0)
            throw RuntimeError(ErrorNumber::DriveNotReady);
    }

    void count(Asked asked) {
        requirePresent();
        --callsLeft;
        const int call = ++calls[static_cast<size_t>(asked)];
        for (const auto& [kind, range] : failing) {
            if (kind == asked && call >= range.first && call <= range.last)
                throw RuntimeError(range.number);
        }
    }
};

namespace {

template <typename State>
class MemorySource : public disc::ByteSource {
public:
    MemorySource(std::shared_ptr<State> state, const MemoryNode& node)
        : m_state(std::move(state))
        , m_node(node) {}

    uint64_t size() const override { return m_node.facts.size; }

    // A file that is longer than its content goes on with zeros.
    size_t read(uint64_t offset, std::span<std::byte> buffer) const override {
        m_state->count(Asked::Read);
        const auto left = size() - std::min(offset, size());
        const auto length = static_cast<size_t>(std::min<uint64_t>(left, buffer.size()));
        if (m_node.unread && offset + length > size() / 2)
            throw RuntimeError(*m_node.unread);
        std::fill_n(buffer.begin(), length, std::byte{0});
        if (offset < m_node.content.size())
            std::memcpy(buffer.data(), m_node.content.data() + offset,
                        std::min<size_t>(length, m_node.content.size() - offset));
        return length;
    }

private:
    std::shared_ptr<State> m_state;
    MemoryNode m_node;
};

} // namespace

MemoryNode MemoryNode::withSize(uint64_t size) const {
    return changed(*this, [&](MemoryNode& node) { node.facts.size = size; });
}

MemoryNode MemoryNode::withTime(std::time_t modified) const {
    return changed(*this, [&](MemoryNode& node) { node.facts.modified = modified; });
}

MemoryNode MemoryNode::withAttributes(unsigned attributes) const {
    return changed(*this, [&](MemoryNode& node) { node.facts.attributes = attributes; });
}

MemoryNode MemoryNode::withDamage(std::string text) const {
    return changed(*this, [&](MemoryNode& node) { node.damage = std::move(text); });
}

MemoryNode MemoryNode::withFailure(ErrorNumber number) const {
    return changed(*this, [&](MemoryNode& node) { node.failure = number; });
}

MemoryNode MemoryNode::withOpenFailure(ErrorNumber number) const {
    return changed(*this, [&](MemoryNode& node) { node.unopened = number; });
}

MemoryNode MemoryNode::withReadFailure(ErrorNumber number) const {
    return changed(*this, [&](MemoryNode& node) { node.unread = number; });
}

MemoryNode MemoryNode::standingFor(std::string path) const {
    return changed(*this, [&](MemoryNode& node) { node.standsFor = std::move(path); });
}

MemoryNode folder(std::string name, std::vector<MemoryNode> children) {
    MemoryNode node;
    node.name = std::move(name);
    node.isDirectory = true;
    node.children = std::move(children);
    return node;
}

MemoryNode file(std::string name, std::string content) {
    MemoryNode node;
    node.name = std::move(name);
    node.facts = {content.size(), kFixedTime, disc::attribute::kReadOnly};
    node.content = std::move(content);
    return node;
}

MemoryMedium::MemoryMedium(MemoryNode root)
    : volume{"MEMORY", "CDFS", "0123-4567", 650ULL << 20, 0}
    , m_state(std::make_shared<State>()) {
    m_state->store(std::move(root));
}

MemoryMedium::~MemoryMedium() = default;

void MemoryMedium::failOn(Asked asked, int call, ErrorNumber number, int count) {
    m_state->failing.push_back({asked, {call, call + count - 1, number}});
}

void MemoryMedium::vanishAfter(int calls) {
    m_state->callsLeft = calls;
}

int MemoryMedium::calls(Asked asked) const {
    return m_state->calls[static_cast<size_t>(asked)];
}

const std::vector<std::string>& MemoryMedium::listed() const {
    return m_state->listed;
}

disc::VolumeFacts MemoryMedium::facts() const {
    m_state->requirePresent();
    return volume;
}

Place MemoryMedium::root() const {
    return m_state->placeOf(0);
}

disc::Listing MemoryMedium::list(const Place& /*parent*/, const Place& directory) const {
    m_state->count(Asked::List);
    const auto& stored = m_state->nodes.at(directory.number);
    if (!stored.node.isDirectory)
        throw std::logic_error("asked to list a file: " + stored.path);
    m_state->listed.push_back(stored.path.empty() ? "\\" : stored.path);
    if (stored.node.failure)
        throw RuntimeError(*stored.node.failure);
    disc::Listing listing;
    listing.damage = stored.node.damage;
    for (const auto child : stored.children) {
        const auto& node = m_state->nodes[child].node;
        auto& entries = node.isDirectory ? listing.directories : listing.files;
        entries.push_back({node.name, m_state->placeOf(child), node.isDirectory});
    }
    return listing;
}

disc::FileFacts MemoryMedium::fileFacts(const Place& /*directory*/, const Place& file) const {
    m_state->count(Asked::Facts);
    const auto& node = m_state->nodes.at(file.number).node;
    if (node.failure)
        throw RuntimeError(*node.failure);
    return node.facts;
}

std::unique_ptr<disc::ByteSource> MemoryMedium::open(const Place& /*directory*/, const Place& file) const {
    m_state->count(Asked::Open);
    const auto& node = m_state->nodes.at(file.number).node;
    if (node.unopened)
        throw RuntimeError(*node.unopened);
    return std::make_unique<MemorySource<State>>(m_state, node);
}

} // namespace discaro::test
