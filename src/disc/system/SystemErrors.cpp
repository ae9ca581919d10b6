#include "disc/system/SystemErrors.h"

#include <cerrno>
#include <system_error>

namespace discaro::disc {

using base::ErrorNumber;

std::string systemText(int error) {
    return std::generic_category().message(error);
}

ErrorNumber systemErrorNumber(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
    case ELOOP:
        return ErrorNumber::PathMissing;
    case ENOMEDIUM:
    case ENXIO:
    case ENODEV:
        return ErrorNumber::DriveNotReady;
    default:
        return ErrorNumber::ReadFailure;
    }
}

void throwSystemError(int error) {
    throw base::RuntimeError(systemErrorNumber(error), systemText(error));
}

} // namespace discaro::disc
