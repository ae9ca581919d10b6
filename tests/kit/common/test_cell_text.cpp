#include "kit/common/CellText.h"

#include <gtest/gtest.h>

namespace discaro::kit {
namespace {

QString lineWith(char16_t mark) {
    return oneLine(QString("a") + QChar(mark) + "b");
}

TEST(CellText, AMarkThatTurnsTheDirectionIsLeftOut) {
    for (const char16_t mark : {0x202A, 0x202B, 0x202C, 0x202D, 0x202E, 0x2066, 0x2067, 0x2068, 0x2069})
        EXPECT_EQ(lineWith(mark), "ab") << static_cast<int>(mark);
}

TEST(CellText, AMarkThatGivesASignItsSideStays) {
    for (const char16_t mark : {0x200E, 0x200F, 0x061C})
        EXPECT_EQ(lineWith(mark), QString("a") + QChar(mark) + "b") << static_cast<int>(mark);
}

TEST(CellText, EveryKindOfLineEndIsOneBlank) {
    for (const char16_t end : {0x0A, 0x0B, 0x0C, 0x0D, 0x85, 0x2028, 0x2029})
        EXPECT_EQ(lineWith(end), "a b") << static_cast<int>(end);
    EXPECT_EQ(oneLine("a\r\nb\u2028"), "a b ");
}

} // namespace
} // namespace discaro::kit
