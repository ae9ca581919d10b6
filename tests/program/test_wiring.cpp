#include "app/Windows.h"
#include "program/Wiring.h"
#include "support/windows/FreshWindows.h"

#include <gtest/gtest.h>

namespace discaro::program {

TEST(Wiring, EveryWindowIsKnownByItsName) {
    const test::FreshWindows windows;
    registerWindows();
    for (const char* name :
         {"Switch", "Loading", "Searching", "Scanform", "DeleteCD", "EXMain", "EXCDROM", "EXDir", "EXFile"})
        EXPECT_TRUE(app::Windows::Exists(name)) << name;
}

TEST(Wiring, AWindowIsMadeUnderItsOwnName) {
    const test::FreshWindows windows;
    registerWindows();
    for (const char* name : {"Loading", "Searching"}) {
        app::Windows::Load(name);
        ASSERT_TRUE(app::Windows::IsLoaded(name)) << name;
        EXPECT_EQ(app::Windows::Find(name)->name(), name);
    }
}

} // namespace discaro::program
