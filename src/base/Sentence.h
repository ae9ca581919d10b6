#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace discaro::base {

// A sentence with places for values, "%1" to "%9", so that it stands in the source as a whole. Each place gets the
// value of its number as it is: signs in a value are no places. A place without a value, and any other "%", stay.
std::string filledIn(std::string_view sentence, std::initializer_list<std::string_view> values);

} // namespace discaro::base
