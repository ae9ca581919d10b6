#include "disc/medium/DirectoryClaims.h"

#include <algorithm>

namespace discaro::disc {

std::string DirectoryClaims::refusal(uint64_t directory, uint64_t place) const {
    const auto known = m_places.find(directory);
    if (known != m_places.end())
        return known->second == place ? "" : "the directory stands in more than one place of the disc";
    if (m_bytesLeft == 0)
        return "the directories of the disc are larger than the disc";
    return {};
}

void DirectoryClaims::listed(uint64_t directory, uint64_t place, uint64_t bytes) {
    if (m_places.emplace(directory, place).second)
        m_bytesLeft -= std::min(m_bytesLeft, bytes);
}

} // namespace discaro::disc
