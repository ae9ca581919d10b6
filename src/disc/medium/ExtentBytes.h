#pragma once

#include "disc/medium/Medium.h"

#include <memory>
#include <vector>

namespace discaro::disc {

// A stretch of a medium's bytes, or of zeros that the medium does not keep.
struct Extent {
    static constexpr uint64_t kZeros = UINT64_MAX;

    uint64_t offset = 0; // in the medium, or kZeros
    uint64_t length = 0;
};

// The content of a file that lies in one or more stretches of a medium. Its size is what the medium states; reading
// what the medium does not hold is a ReadFailure.
class ExtentBytes : public ByteSource {
public:
    ExtentBytes(std::shared_ptr<const ByteSource> medium, const std::vector<Extent>& extents);

    uint64_t size() const override { return m_size; }
    size_t read(uint64_t offset, std::span<std::byte> buffer) const override;

private:
    struct Piece {
        uint64_t start = 0; // in the file
        Extent extent;
    };

    size_t readPiece(const Piece& piece, uint64_t offset, std::span<std::byte> buffer) const;

    std::shared_ptr<const ByteSource> m_medium;
    std::vector<Piece> m_pieces; // none is empty
    uint64_t m_size = 0;
};

} // namespace discaro::disc
