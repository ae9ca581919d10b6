#include "base/Sentence.h"

#include <gtest/gtest.h>

namespace discaro::base {
namespace {

TEST(Sentence, WithoutPlacesStaysAsItIs) {
    EXPECT_EQ(filledIn("", {}), "");
    EXPECT_EQ(filledIn("The disc is full.\r\n", {"unused"}), "The disc is full.\r\n");
}

TEST(Sentence, TakesTheValuesByTheirNumbers) {
    EXPECT_EQ(filledIn("%1 of %2 files", {"3", "5"}), "3 of 5 files");
    EXPECT_EQ(filledIn("%2 before %1, and %2 again", {"a", "b"}), "b before a, and b again");
    EXPECT_EQ(filledIn("%1%2", {"", "end"}), "end");
    EXPECT_EQ(filledIn("%9%1", {"1", "2", "3", "4", "5", "6", "7", "8", "9"}), "91");
}

TEST(Sentence, FollowsAPlaceWithADigitOfItsOwn) {
    EXPECT_EQ(filledIn("%10", {"ten"}), "ten0");
}

TEST(Sentence, TakesAValueThatLooksLikeAPlaceAsItIs) {
    EXPECT_EQ(filledIn("'%1' and '%2'", {"%2 %1", "100 %"}), "'%2 %1' and '100 %'");
}

TEST(Sentence, KeepsSignsThatAreNoPlaces) {
    EXPECT_EQ(filledIn("12 % of %x, %0, %%1 and %", {"a"}), "12 % of %x, %0, %a and %");
}

TEST(Sentence, KeepsAPlaceWithoutAValue) {
    EXPECT_EQ(filledIn("%1, %2", {"a"}), "a, %2");
}

TEST(Sentence, TakesValuesWithZeroBytes) {
    EXPECT_EQ(filledIn("<%1>", {std::string_view("a\0b", 3)}), std::string("<a\0b>", 5));
}

} // namespace
} // namespace discaro::base
