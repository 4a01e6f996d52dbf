#include "text/text.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(Text, GoesThroughUtf16AndBack) {
    EXPECT_EQ(toWide("设备IP：10.0.0.1"), L"设备IP：10.0.0.1");
    EXPECT_EQ(toUtf8(L"设备IP：10.0.0.1"), "设备IP：10.0.0.1");
    EXPECT_EQ(toWide(""), L"");
    EXPECT_EQ(toUtf8(L"\xD83D\xDE00"), "\xF0\x9F\x98\x80");
    EXPECT_EQ(toWide("\xFF!"), L"\xFFFD!");
}

TEST(Text, ThatIsNotUtf8IsTheSystems) {
    EXPECT_EQ(anyToWide("设备"), L"设备");
    EXPECT_EQ(anyToWide("\xC9\xE8\xB1\xB8"), L"设备") << "in the code page of these tests";
    EXPECT_EQ(anyToGbk("设备1"),
              "\xC9\xE8\xB1\xB8"
              "1");
    EXPECT_EQ(anyToGbk(std::string_view("\0A", 2)), std::string("\0A", 2)) << "not cut at a zero";
}

}  // namespace
}  // namespace korvane
