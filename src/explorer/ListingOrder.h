#pragma once

#include <array>
#include <span>
#include <string_view>

namespace discaro::explorer {

// One of the six keys by which the listing can be ordered.
struct OrderKey {
    std::string_view word; // command word, and key of the toolbar's button
    int sortColumn;        // column of the listing from 0, one that sorts right as text
    int header;            // the column header from 1 whose click chooses it
    const char* menuItem;
    const char* popUpItem;
};

std::span<const OrderKey> orderKeys();

// The key with that command word, or that a click on that header chooses; null when there is none.
const OrderKey* orderKeyOf(std::string_view word);
const OrderKey* orderKeyOfHeader(int header);

} // namespace discaro::explorer
