#include "disc/image/OpenImage.h"

#include "base/RuntimeError.h"
#include "disc/image/SectorSource.h"
#include "disc/iso/IsoMedium.h"
#include "disc/medium/ShownNames.h"
#include "disc/udf/UdfMedium.h"

#include <optional>
#include <string>

namespace discaro::disc {

namespace {

std::unique_ptr<Medium> openIso(const DiscData& data, uint64_t sessionStart) {
    const auto volume = readIsoVolume(*data.sectors, sessionStart);
    return volume ? std::make_unique<IsoMedium>(data.sectors, *volume) : nullptr;
}

std::unique_ptr<Medium> openUdf(const DiscData& data, uint64_t sessionStart) {
    return std::make_unique<UdfMedium>(data.sectors, readUdfVolume(*data.sectors, sessionStart));
}

Listing rootListing(const Medium& medium) {
    Listing listing;
    base::skipErrors([&] { listing = medium.list(medium.root(), medium.root()); });
    return listing;
}

// Whether the ISO 9660 side may be there only to say that the files are elsewhere.
bool isPerhapsANote(const Medium& iso) {
    constexpr size_t kMostFiles = 2;
    const auto listing = rootListing(iso);
    return listing.directories.empty() && listing.files.size() <= kMostFiles;
}

bool holdsMore(const Medium& udf, const Medium& iso) {
    const auto listing = rootListing(udf);
    return !listing.directories.empty() || listing.files.size() > rootListing(iso).files.size();
}

// Null when the session holds no file system.
std::unique_ptr<Medium> openSession(const DiscData& data, uint64_t start) {
    auto iso = openIso(data, start);
    const bool needsUdf = (!iso || isPerhapsANote(*iso)) && announcesUdf(*data.sectors, start);
    if (!needsUdf)
        return iso;
    auto udf = openUdf(data, start);
    return !iso || holdsMore(*udf, *iso) ? std::move(udf) : std::move(iso);
}

} // namespace

std::unique_ptr<Medium> openMedium(const DiscData& data) {
    std::optional<base::RuntimeError> reason;
    for (const auto start : data.sessions) {
        try {
            if (auto medium = openSession(data, start))
                return medium;
        } catch (const base::RuntimeError& error) {
            if (!reason)
                reason = error;
        }
    }
    if (reason)
        throw *reason;
    throw base::RuntimeError(base::ErrorNumber::FileSystemUnsupported, "no root directory can be found");
}

std::unique_ptr<Medium> openImage(const std::filesystem::path& path) {
    try {
        return openMedium(openSectors(path));
    } catch (const base::RuntimeError& error) {
        throw error.about(shownPath(path));
    }
}

} // namespace discaro::disc
