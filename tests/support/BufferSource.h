#pragma once

#include "base/RuntimeError.h"
#include "disc/medium/Medium.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <string>

namespace discaro::test {

// A file that is a string, which counts what is asked of it and can be made to lie or to fail.
class BufferSource : public disc::ByteSource {
public:
    explicit BufferSource(std::string bytes)
        : m_bytes(std::move(bytes)) {}

    // A directory entry that tells more than the medium has.
    void claimSize(uint64_t size) { m_claimed = size; }

    // Reads that touch the byte at the offset, or any behind it, throw.
    void failFrom(uint64_t offset, base::ErrorNumber number = base::ErrorNumber::ReadFailure) {
        m_failure = offset;
        m_number = number;
    }

    int reads() const { return m_reads; }
    uint64_t bytesAsked() const { return m_bytesAsked; }

    uint64_t size() const override { return std::max<uint64_t>(m_claimed, m_bytes.size()); }

    size_t read(uint64_t offset, std::span<std::byte> buffer) const override {
        ++m_reads;
        m_bytesAsked += buffer.size();
        if (offset + buffer.size() > m_failure)
            throw base::RuntimeError(m_number);
        if (offset >= m_bytes.size() || buffer.empty())
            return 0;
        const size_t count = std::min<size_t>(buffer.size(), m_bytes.size() - offset);
        std::memcpy(buffer.data(), m_bytes.data() + offset, count);
        return count;
    }

private:
    std::string m_bytes;
    uint64_t m_claimed = 0;
    uint64_t m_failure = std::numeric_limits<uint64_t>::max();
    base::ErrorNumber m_number = base::ErrorNumber::ReadFailure;
    mutable int m_reads = 0;
    mutable uint64_t m_bytesAsked = 0;
};

} // namespace discaro::test
