#pragma once

#include "disc/medium/Medium.h"
#include "disc/udf/UdfLayout.h"
#include "disc/udf/UdfPartitions.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace discaro::disc {

// A UDF volume (ECMA-167; UDF 1.02 to 2.60) with 2048-byte blocks: pressed discs, and rewritable ones with sparable,
// virtual (packet written CD-R) and metadata partitions.
struct UdfVolume {
    UdfPartitions partitions;
    std::string label;
    std::array<std::byte, udf_file_set::kLength> fileSet{}; // the file set descriptor
    UdfAddress root;                                        // file entry of the root directory
    uint64_t totalBytes = 0;
};

// Whether the recognition sequence behind the session's system sectors announces UDF.
bool announcesUdf(const ByteSource& medium, uint64_t sessionStart);

// Throws base::RuntimeError: FileSystemUnsupported, with what is missing, or ReadFailure.
UdfVolume readUdfVolume(const ByteSource& medium, uint64_t sessionStart);

// Text in the form of OSTA compressed unicode (UDF 2.1.1): 8 or 16 bits a character, as the first byte says.
std::string decodeUdfText(Bytes text);

} // namespace discaro::disc
