#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace discaro::disc {

// A block of a version resource. Offsets are from the resource's beginning.
struct VersionBlock {
    std::string key;
    size_t start = 0;
    size_t end = 0;            // as the block tells its length; may lie behind the resource's end
    size_t keyEnd = 0;         // behind the key's terminator
    size_t declaredLength = 0; // of the value, as written: bytes, or characters of two bytes
    bool isText = false;
};

// The tree of blocks that a version resource is. There are two forms, told apart by the resource
// itself: the 16-bit one with 8-bit texts, and the later one with UTF-16. Format: the published
// structures VS_VERSIONINFO, StringFileInfo, StringTable, String, VarFileInfo and Var.
//
// Old resource compilers wrote lengths that are a little wrong. Blocks are followed as the
// platform's own reader does it (aligned to four bytes, from the block's beginning); where nothing
// that looks like a block stands there, the other places that such a compiler may have meant are
// tried. Any bytes may be given. A resource yields at most kBlockLimit blocks, then no more
// children.
class VersionBlockTree {
public:
    static constexpr int kBlockLimit = 10'000;

    // The bytes must outlive the object.
    explicit VersionBlockTree(std::string_view resource);

    // Whether texts are UTF-16.
    bool isWide() const { return m_wide; }

    // Nothing when the bytes do not begin with a block.
    std::optional<VersionBlock> root();

    // The blocks inside the block, in their order.
    std::vector<VersionBlock> children(const VersionBlock& parent);

    // The bytes of the block's value up to a terminator, in the encoding of the form.
    std::string_view text(const VersionBlock& block) const;

    // The bytes of the block's value; at most the resource holds.
    std::string_view bytes(const VersionBlock& block, size_t length) const;

private:
    enum class Trust { Strict, Loose };

    size_t unit() const { return m_wide ? 2 : 1; }
    size_t word(size_t offset) const;
    size_t headerLength() const { return m_wide ? 6 : 4; }
    size_t terminator(size_t from, size_t to) const;
    bool isZero(size_t from, size_t to) const;
    size_t valueStart(const VersionBlock& block) const;
    size_t valueLength(const VersionBlock& block) const;
    size_t textEnd(const VersionBlock& block, size_t start) const;
    bool isLikely(const VersionBlock& block) const;
    std::optional<VersionBlock> blockAt(size_t offset, Trust trust) const;
    std::optional<VersionBlock> firstBlock(std::initializer_list<size_t> places);
    std::optional<VersionBlock> firstChild(const VersionBlock& parent);
    std::optional<VersionBlock> next(const VersionBlock& block);

    std::string_view m_resource;
    bool m_wide;
    int m_blocks = 0;
};

} // namespace discaro::disc
