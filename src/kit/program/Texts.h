#pragma once

// The box about an error that nobody has taken.
namespace discaro::kit {

// %1: the error's number, %2: its description.
inline constexpr const char* kRunTimeError = "Run-time error %1:\n\n%2";
// %1: the description.
inline constexpr const char* kErrorWithoutNumber = "Run-time error:\n\n%1";

} // namespace discaro::kit
