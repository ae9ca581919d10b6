#pragma once

#include "disc/medium/DiscData.h"

#include <memory>
#include <optional>

namespace discaro::disc {

// The data tracks of an .nrg image: track data first, then a chain of chunks (four letters, a length, content, all
// big-endian) that the last bytes of the file point to. Read are the chunks CUES/CUEX (addresses), DAOI/DAOX and
// ETNF/ETN2 (tracks), SINF (sessions); versions 1 and 2 of the format.
// Nothing when the file has no such ending. Throws FileSystemUnsupported when it has and no data track is found.
std::optional<DiscData> openNrg(const std::shared_ptr<const ByteSource>& file);

} // namespace discaro::disc
