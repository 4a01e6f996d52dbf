#include "text/text.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(Text, GoesThroughUtf16AndGbkAndBack) {
    EXPECT_EQ(toWide("设备IP：10.0.0.1"), L"设备IP：10.0.0.1");
    EXPECT_EQ(toWide("\xFF!"), L"\xFFFD!");
    EXPECT_EQ(toWide(""), L"");
    EXPECT_EQ(toUtf8(L"\xD83D\xDE00节"), "\xF0\x9F\x98\x80节");
    EXPECT_EQ(utf8ToGbk("1节目"), "1\xBD\xDA\xC4\xBF");
    EXPECT_EQ(gbkToUtf8("1\xBD\xDA\xC4\xBF"), "1节目");
    EXPECT_EQ(utf8ToGbk("\xF0\x9F\x98\x80").find_first_not_of('?'), std::string::npos)
        << "no such character there";
    EXPECT_EQ(gbkToUtf8(std::string_view("\0A", 2)), std::string("\0A", 2)) << "not cut at a zero";
}

}  // namespace
}  // namespace korvane
