#include "model/bounded_list.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

using List = BoundedList<int, 3>;

List listOf(std::initializer_list<int> items) {
    List list;
    for (const int item : items) list.append(item);
    return list;
}

TEST(BoundedList, RefusesWhatWouldExceedTheLimitAndStaysAsItWas) {
    List list = listOf({1, 2, 3});
    EXPECT_FALSE(list.append(4));
    EXPECT_FALSE(list.insert(0, 4));
    EXPECT_FALSE(list.erase(3));
    EXPECT_EQ(list, listOf({1, 2, 3}));
}

TEST(BoundedList, TakesAnElementOfItsOwnWhichMovesMeanwhile) {
    List list = listOf({8, 7});
    EXPECT_TRUE(list.insert(0, list[1]));
    EXPECT_EQ(list, listOf({7, 8, 7}));
}

}  // namespace
}  // namespace korvane
