#include "disc/medium/ExtentBytes.h"

#include "base/RuntimeError.h"

#include <algorithm>

namespace discaro::disc {

ExtentBytes::ExtentBytes(std::shared_ptr<const ByteSource> medium, const std::vector<Extent>& extents)
    : m_medium(std::move(medium)) {
    for (const auto& extent : extents) {
        if (extent.length == 0)
            continue;
        m_pieces.push_back({m_size, extent});
        m_size += extent.length;
    }
}

// From an offset in the file that lies in the piece, to the end of the piece at most.
size_t ExtentBytes::readPiece(const Piece& piece, uint64_t offset, std::span<std::byte> buffer) const {
    const auto within = offset - piece.start;
    const auto wanted = buffer.first(std::min<uint64_t>(buffer.size(), piece.extent.length - within));
    if (piece.extent.offset == Extent::kZeros)
        std::ranges::fill(wanted, std::byte{0});
    else if (m_medium->read(piece.extent.offset + within, wanted) < wanted.size())
        throw base::RuntimeError(base::ErrorNumber::ReadFailure, "the disc ends before the file does");
    return wanted.size();
}

size_t ExtentBytes::read(uint64_t offset, std::span<std::byte> buffer) const {
    if (offset >= m_size)
        return 0;
    auto piece = std::prev(std::ranges::upper_bound(m_pieces, offset, {}, &Piece::start));
    size_t done = 0;
    for (; done < buffer.size() && piece != m_pieces.end(); ++piece)
        done += readPiece(*piece, offset + done, buffer.subspan(done));
    return done;
}

} // namespace discaro::disc
