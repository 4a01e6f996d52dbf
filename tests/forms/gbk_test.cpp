#include "text/gbk.h"

#include <gtest/gtest.h>

namespace korvane {
namespace {

TEST(Gbk, KnowsWhatItLacks) {
    const struct {
        const char *utf8, *gbk, *missing;
    } cases[] = {
        {"", "", ""},
        {"CCTV-1 \xE4\xB8\xAD", "CCTV-1 \xD6\xD0", ""},
        {"\xE9\x95\x95", "\xE9\x46", ""},  // 镕, which the older GB 2312 lacks
        {"a\xF0\x9F\x98\x80\xE4\xB8\xAD\xE0\xB8\x81", "a?\xD6\xD0?", "\xF0\x9F\x98\x80"},
        {"\xE4\xB8", "?", "\xE4"},  // cut
        {"\xFF\x62", "?b", "\xFF"},
    };
    for (const auto& [utf8, gbk, missing] : cases) {
        const GbkText text = toGbk(utf8);
        EXPECT_EQ(text.bytes.substr(0, std::string(gbk).size()), gbk) << utf8;
        EXPECT_EQ(text.missing, missing);
    }
}

TEST(Gbk, ComesBackWithAMarkForWhatIsNone) {
    EXPECT_EQ(gbkToUtf8("") + gbkToUtf8("CCTV \xD6\xD0\xCA\xD3"), "CCTV 中视");
    EXPECT_EQ(gbkToUtf8("\xD6\xD0\xFF").substr(0, 3), "中");
}

}  // namespace
}  // namespace korvane
