#include "text/text.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(Text, GoesThroughUtf16AndBack) {
    EXPECT_EQ(toWide("设备IP：10.0.0.1"), L"设备IP：10.0.0.1");
    EXPECT_EQ(toWide("\xFF!"), L"\xFFFD!");
    EXPECT_EQ(toUtf8(L"\xD83D\xDE00节"), "\xF0\x9F\x98\x80节");
    std::wstring used = L"what was there";
    toWide("节", used);
    EXPECT_EQ(used, L"节");
}

// Here the system's code page is GBK.
TEST(Text, ThatIsNotUtf8IsTheSystems) {
    for (const char* bytes : {"设-", "\xC9\xE8-"}) {
        EXPECT_EQ(anyToWide(bytes), L"设-");
        EXPECT_EQ(anyToGbk(bytes), "\xC9\xE8-");
    }
    EXPECT_EQ(anyToGbk(std::string_view("\0A", 2)), std::string("\0A", 2)) << "not cut at a zero";
    EXPECT_EQ(systemToUtf8("\xC9\xE8-"), "设-");
}

}  // namespace
}  // namespace korvane
