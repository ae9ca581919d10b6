#pragma once

#include <cstdint>
#include <string>
#include <variant>

namespace discaro::db {

// The value of a field in one row; std::monostate is null. Text is UTF-8 as stored.
using Value = std::variant<std::monostate, bool, int64_t, double, std::string>;

bool isNull(const Value& value);

// The value as text: null gives "", a Boolean "true" or "false", numbers their general form.
std::string textOf(const Value& value);

// The value as a number: null gives 0, a Boolean 0 or 1, text its leading number.
double numberOf(const Value& value);

} // namespace discaro::db
