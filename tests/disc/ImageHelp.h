#pragma once

#include "base/RuntimeError.h"
#include "disc/image/OpenImage.h"
#include "disc/image/SectorSource.h"
#include "support/BufferSource.h"
#include "support/MediumWalk.h"

#include <memory>
#include <optional>
#include <string>

namespace discaro::test {

// An image in memory as a medium.
inline std::unique_ptr<disc::Medium> openBytes(std::string image) {
    return disc::openMedium(disc::recogniseImage(std::make_shared<BufferSource>(std::move(image))));
}

// The number of the error that the statement ends with; nothing when it ends well.
template <typename Statement>
std::optional<int> errorOf(Statement&& statement) {
    try {
        statement();
    } catch (const base::RuntimeError& error) {
        return error.number();
    }
    return std::nullopt;
}

inline std::optional<int> numberOf(base::ErrorNumber number) {
    return static_cast<int>(number);
}

// Names in the medium's own order.
inline std::vector<std::string> namesOf(const std::vector<disc::Entry>& entries) {
    std::vector<std::string> names;
    for (const auto& entry : entries)
        names.push_back(entry.name);
    return names;
}

inline disc::Listing rootOf(const disc::Medium& medium) {
    return medium.list(medium.root(), medium.root());
}

// The facts of the only file in the root.
inline disc::FileFacts onlyFile(const disc::Medium& medium) {
    const auto listing = rootOf(medium);
    return medium.fileFacts(medium.root(), listing.files.at(0).place);
}

} // namespace discaro::test
