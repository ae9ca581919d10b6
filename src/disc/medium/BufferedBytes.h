#pragma once

#include "disc/medium/Medium.h"

#include <array>
#include <memory>
#include <vector>

namespace discaro::disc {

// Reads another source in blocks of 64 KiB and keeps the eight used last, so that directories and the heads of files,
// which lie side by side, cost few reads of the medium. Large reads go past the blocks. For one thread.
class BufferedBytes : public ByteSource {
public:
    explicit BufferedBytes(std::shared_ptr<const ByteSource> source);

    uint64_t size() const override { return m_size; }

    // A block that cannot be read whole is read just where it is wanted: one bad sector spoils no other.
    size_t read(uint64_t offset, std::span<std::byte> buffer) const override;

private:
    struct Block {
        uint64_t number = UINT64_MAX;
        uint64_t lastUse = 0;
        std::vector<std::byte> bytes;
    };

    const Block* blockWith(uint64_t number) const;
    Block& leastUsed() const;

    std::shared_ptr<const ByteSource> m_source;
    uint64_t m_size;
    mutable std::array<Block, 8> m_blocks;
    mutable uint64_t m_uses = 0;
};

} // namespace discaro::disc
