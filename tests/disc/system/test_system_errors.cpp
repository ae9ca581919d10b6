#include "disc/system/SystemErrors.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace discaro::disc {
namespace {

using base::ErrorNumber;

TEST(SystemErrors, ADiscOrDriveThatIsGoneIsNotReady) {
    for (const int error : {ENOMEDIUM, ENXIO, ENODEV})
        EXPECT_EQ(systemErrorNumber(error), ErrorNumber::DriveNotReady) << systemText(error);
}

TEST(SystemErrors, ANameThatIsGoneIsMissing) {
    for (const int error : {ENOENT, ENOTDIR, ELOOP})
        EXPECT_EQ(systemErrorNumber(error), ErrorNumber::PathMissing) << systemText(error);
}

TEST(SystemErrors, AScratchAndAMissingRightAreFailuresToRead) {
    for (const int error : {EIO, EACCES})
        EXPECT_EQ(systemErrorNumber(error), ErrorNumber::ReadFailure) << systemText(error);
}

} // namespace
} // namespace discaro::disc
