#pragma once

#include "disc/iso/IsoPlace.h"
#include "disc/iso/IsoVolume.h"
#include "disc/medium/DirectoryClaims.h"
#include "disc/medium/ExtentBytes.h"
#include "disc/medium/Medium.h"

#include <memory>
#include <vector>

namespace discaro::disc {

// An ISO 9660 volume, with Joliet or Rock Ridge names where it has them. Places carry all that a file's facts are
// made of, so that these cost no reading; only of a file in several extents (above 4 GiB) are the records read again.
// Not listed are associated files (another system's second forks); directories that Rock Ridge has moved are listed
// where they belong; a symbolic link is a file of length 0.
class IsoMedium : public Medium {
public:
    IsoMedium(std::shared_ptr<const ByteSource> sectors, const IsoVolume& volume);

    VolumeFacts facts() const override;
    Place root() const override;

    // Throws base::RuntimeError (DirectoryDamaged) when no byte of the directory can be read.
    Listing list(const Place& parent, const Place& directory) const override;

    // Takes directories, too.
    FileFacts fileFacts(const Place& directory, const Place& file) const override;
    std::unique_ptr<ByteSource> open(const Place& directory, const Place& file) const override;

private:
    FileFacts directoryFacts(const IsoDirectoryPlace& place) const;
    std::vector<Extent> extentsOf(const Place& directory, const Place& file) const;
    uint64_t byteOf(uint32_t block) const { return block * m_volume.geometry.blockSize; }

    std::shared_ptr<const ByteSource> m_sectors;
    IsoVolume m_volume;
    mutable DirectoryClaims m_claims;
};

} // namespace discaro::disc
