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
    EXPECT_FALSE(listOf({1}).insert(2, 9));
}

TEST(BoundedList, SlotsBeyondTheElementsAreZero) {
    List list = listOf({8, 7});
    EXPECT_TRUE(list.insert(0, list[1]));  // an element of its own, which moves meanwhile
    EXPECT_TRUE(list.erase(0));
    EXPECT_EQ(list, listOf({8, 7}));
    list.resize(1);
    EXPECT_EQ(list.slots(), (std::array<int, 3>{8, 0, 0}));
    list.assign({4, 5, 6}, 99);
    EXPECT_EQ(list.size(), 3u);
    list.assign({1, 2, 3}, 1);
    EXPECT_EQ(list.slots(), (std::array<int, 3>{1, 0, 0}));
}

}  // namespace
}  // namespace korvane
