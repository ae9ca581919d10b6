#pragma once

#include "disc/medium/DirectoryClaims.h"
#include "disc/medium/Medium.h"
#include "disc/udf/UdfFile.h"
#include "disc/udf/UdfVolume.h"

#include <memory>
#include <optional>

namespace discaro::disc {

// A UDF volume. A file's facts are in an entry of its own on the disc, so they cost a read; a symbolic link is a
// file of length 0.
class UdfMedium : public Medium {
public:
    UdfMedium(std::shared_ptr<const ByteSource> sectors, UdfVolume volume);

    VolumeFacts facts() const override;
    Place root() const override;

    // Throws base::RuntimeError (DirectoryDamaged) when nothing of the directory can be read.
    Listing list(const Place& parent, const Place& directory) const override;

    // Takes directories, too. Throws base::RuntimeError (FileDamaged) when the file has no entry.
    FileFacts fileFacts(const Place& directory, const Place& file) const override;
    std::unique_ptr<ByteSource> open(const Place& directory, const Place& file) const override;

private:
    std::optional<UdfFile> entryOf(const Place& place) const;

    std::shared_ptr<const ByteSource> m_sectors;
    UdfVolume m_volume;
    mutable DirectoryClaims m_claims;
};

} // namespace discaro::disc
