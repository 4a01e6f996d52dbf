#include "forms/fields.h"

#include <array>
#include <gtest/gtest.h>

#include "support/scripted_forms.h"

namespace korvane {
namespace {

enum : int { byteId = 1, wordId, mhzId, nameId, choiceId, flagId, addressId, lockedId };

constexpr std::array<std::string_view, 2> items = {"8M", "2M"};

class FieldsTest : public testing::Test {
  protected:
    FieldsTest() {
        fields_.number(byteId, byte_, 3);
        fields_.number(wordId, word_);
        fields_.megahertz(mhzId, tenHz_);
        fields_.text(nameId, name_, "网络名称", 4);
        fields_.choice(choiceId, choice_, items);
        fields_.flag(flagId, flag_, lockedId);
        fields_.address(addressId, address_);
        fields_.show(controls_);
    }
    // What comes of an entry: the refusal's text, or empty.
    std::string enter(int control, const std::string& text) {
        controls_.texts[control] = text;
        const auto refusal = fields_.read(controls_);
        EXPECT_EQ(refusal ? refusal->control : control, control);
        return refusal ? refusal->message : "";
    }

    std::uint8_t byte_ = 7, choice_ = 9, flag_ = 5;
    std::uint32_t word_ = 0xFFFFFFFF, tenHz_ = 47412345;
    std::string name_ = "\xD6\xD0\x80";  // 中 in GBK, and half a character
    Ipv4 address_{225, 1, 2, 3};
    test::ScriptedControls controls_;
    Fields fields_;
};

TEST_F(FieldsTest, ShowWhatTheyStandFor) {
    EXPECT_EQ(controls_.texts[byteId], "7");
    EXPECT_EQ(controls_.texts[wordId], "4294967295");
    EXPECT_EQ(controls_.texts[mhzId], "474");
    EXPECT_EQ(controls_.texts[nameId].substr(0, 3), "中");
    EXPECT_EQ(controls_.items[choiceId], (std::vector<std::string>{"8M", "2M"}));
    EXPECT_EQ(controls_.selections[choiceId], 0) << "there is no item 9";
    EXPECT_TRUE(controls_.checks[flagId]);
    EXPECT_TRUE(controls_.enabledOnes[lockedId]);
    EXPECT_EQ(controls_.addresses[addressId], address_);
}

// Not even what no control can show is lost by looking at it.
TEST_F(FieldsTest, WhatNobodyTouchedKeepsAllItsBits) {
    EXPECT_FALSE(fields_.changed(controls_));
    ASSERT_FALSE(fields_.read(controls_));
    EXPECT_EQ(tenHz_, 47412345u);
    EXPECT_EQ(choice_, 9);
    EXPECT_EQ(flag_, 5);
    EXPECT_EQ(name_, "\xD6\xD0\x80");
    EXPECT_EQ(enter(mhzId, " 474 "), "");
    EXPECT_EQ(tenHz_, 47412345u) << "the same number in other words";
    EXPECT_EQ(enter(mhzId, "475"), "");
    EXPECT_EQ(tenHz_, 47500000u);
    EXPECT_EQ(enter(mhzId, "474"), "");
    EXPECT_EQ(tenHz_, 47412345u) << "as it was shown";
}

TEST_F(FieldsTest, TakeWhatWasEntered) {
    controls_.selections[choiceId] = 1;
    controls_.checks[flagId] = false;
    controls_.addresses[addressId] = {239, 0, 0, 1};
    fields_.clicked(controls_, flagId);
    EXPECT_FALSE(controls_.enabledOnes[lockedId]);
    EXPECT_TRUE(fields_.changed(controls_));
    EXPECT_EQ(enter(nameId, "央视"), "");
    EXPECT_EQ(name_, "\xD1\xEB\xCA\xD3");
    EXPECT_EQ(choice_, 1);
    EXPECT_EQ(flag_, 0);
    EXPECT_EQ(address_, (Ipv4{239, 0, 0, 1}));
    EXPECT_EQ(enter(byteId, "3"), "");
    EXPECT_EQ(byte_, 3);
}

TEST_F(FieldsTest, RefuseWhatIsNoneOrOutOfRangeAndTakeNothing) {
    const std::string byteRange = "请输入 3 和 255 之间的整数。";
    const struct {
        int control;
        const char* text;
        std::string message;
    } cases[] = {
        {byteId, "", "请输入一个整数。"},
        {byteId, "1x", "请输入一个整数。"},
        {byteId, "2", byteRange},
        {byteId, "256", byteRange},
        {byteId, "-1", byteRange},
        {byteId, "99999999999999999999", byteRange},
        {wordId, "4294967296", "请输入 0 和 4294967295 之间的整数。"},
        {mhzId, "42950", "请输入 0 和 42949 之间的整数。"},
        {nameId, "央视一", "网络名称超过4个字节（一个汉字占两个字节）"},
        {nameId, "a😀b", "网络名称中的字符“😀”不能用GBK编码表示"},
    };
    controls_.checks[flagId] = false;
    for (const auto& [control, text, message] : cases) {
        const std::string before = controls_.texts[control];
        EXPECT_EQ(enter(control, text), message);
        EXPECT_EQ(flag_, 5) << "nothing else was taken either";
        controls_.texts[control] = before;
    }
    EXPECT_EQ(enter(mhzId, "42949"), "");
    EXPECT_EQ(tenHz_, 4294900000u);
}

}  // namespace
}  // namespace korvane
