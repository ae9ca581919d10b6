#include "disc/medium/BufferedBytes.h"

#include "disc/medium/UnlessGone.h"

#include <algorithm>
#include <cstring>

namespace discaro::disc {

namespace {

constexpr uint64_t kBlockSize = 65536;

} // namespace

BufferedBytes::BufferedBytes(std::shared_ptr<const ByteSource> source)
    : m_source(std::move(source))
    , m_size(m_source->size()) {}

BufferedBytes::Block& BufferedBytes::leastUsed() const {
    return *std::ranges::min_element(m_blocks, {}, &Block::lastUse);
}

// Null where the block cannot be read whole.
const BufferedBytes::Block* BufferedBytes::blockWith(uint64_t number) const {
    const auto known = std::ranges::find(m_blocks, number, &Block::number);
    if (known != m_blocks.end()) {
        known->lastUse = ++m_uses;
        return &*known;
    }
    auto& block = leastUsed();
    block.number = UINT64_MAX;
    block.lastUse = 0;
    block.bytes.resize(std::min(kBlockSize, m_size - number * kBlockSize));
    const bool whole = skipErrorsUnlessGone([&] {
        if (m_source->read(number * kBlockSize, block.bytes) == block.bytes.size())
            block.number = number;
    });
    if (!whole || block.number != number)
        return nullptr;
    block.lastUse = ++m_uses;
    return &block;
}

size_t BufferedBytes::read(uint64_t offset, std::span<std::byte> buffer) const {
    if (offset >= m_size)
        return 0;
    if (buffer.size() >= kBlockSize)
        return m_source->read(offset, buffer);
    size_t done = 0;
    while (done < buffer.size() && offset + done < m_size) {
        const auto* block = blockWith((offset + done) / kBlockSize);
        if (block == nullptr)
            return done + m_source->read(offset + done, buffer.subspan(done));
        const auto within = (offset + done) % kBlockSize;
        const auto length = std::min(block->bytes.size() - within, buffer.size() - done);
        std::memcpy(buffer.data() + done, block->bytes.data() + within, length);
        done += length;
    }
    return done;
}

} // namespace discaro::disc
