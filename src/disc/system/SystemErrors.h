#pragma once

#include "base/RuntimeError.h"

#include <string>

namespace discaro::disc {

// What the system says of a failure.
std::string systemText(int error);

// PathMissing when the name is gone or no longer what it was, DriveNotReady when the disc or its drive is gone, else
// ReadFailure: a scratch and a disc that was torn out may both give EIO.
base::ErrorNumber systemErrorNumber(int error);

// Throws base::RuntimeError of that number.
[[noreturn]] void throwSystemError(int error);

} // namespace discaro::disc
