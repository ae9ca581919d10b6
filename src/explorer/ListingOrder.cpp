#include "explorer/ListingOrder.h"

#include <algorithm>

namespace discaro::explorer {

namespace {

constexpr std::array<OrderKey, 6> kOrderKeys = {{
    {"filename", 0, 1, "thefilename", "lname"},
    {"filesize", 2, 2, "thefilesize", "lsize"},
    {"fileext", 3, 4, "thefileExtension", "lext"},
    {"filedate", 5, 5, "thefiledate", "ldate"},
    {"fileattrib", 6, 7, "thefileAttributes", "lattrib"},
    {"numoficons", 8, 8, "thefileNumberofIcons", "licons"},
}};

template <typename Member, typename Wanted>
const OrderKey* keyWith(Member OrderKey::*member, const Wanted& wanted) {
    const auto found = std::ranges::find(kOrderKeys, wanted, member);
    return found == kOrderKeys.end() ? nullptr : &*found;
}

} // namespace

std::span<const OrderKey> orderKeys() {
    return kOrderKeys;
}

const OrderKey* orderKeyOf(std::string_view word) {
    return keyWith(&OrderKey::word, word);
}

const OrderKey* orderKeyOfHeader(int header) {
    return keyWith(&OrderKey::header, header);
}

} // namespace discaro::explorer
