#include "kit/controls/ControlArray.h"

#include <gtest/gtest.h>

using discaro::base::ErrorNumber;
using discaro::base::RuntimeError;
using discaro::kit::ControlArray;

TEST(ControlArray, GivesElementsByIndexAndAllowsGaps) {
    int zero = 0;
    int three = 3;
    ControlArray<int> array;
    array.put(3, &three);
    array.put(0, &zero);
    EXPECT_EQ(&array(0), &zero);
    EXPECT_EQ(&array(3), &three);
    EXPECT_EQ(array.count(), 2);
    EXPECT_TRUE(array.contains(3));
    EXPECT_FALSE(array.contains(1));
}

TEST(ControlArray, RefusesAnIndexThatIsNotThere) {
    int zero = 0;
    ControlArray<int> array;
    array.put(0, &zero);
    for (const int index : {-1, 1, 1000000}) {
        try {
            array(index);
            FAIL() << index;
        } catch (const RuntimeError& error) {
            EXPECT_TRUE(error.is(ErrorNumber::InvalidValue));
        }
    }
}

TEST(ControlArray, IteratesByAscendingIndex) {
    int values[3] = {};
    ControlArray<int> array;
    for (const int index : {7, 1, 4})
        array.put(index, &values[index / 3]);
    std::vector<int> seen;
    for (const auto& [index, element] : array)
        seen.push_back(index);
    EXPECT_EQ(seen, (std::vector<int>{1, 4, 7}));
}
