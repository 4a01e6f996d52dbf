#include "model/config_checks.h"

#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "support/bytes.h"
#include "support/configurations.h"
#include "support/scripted_prompts.h"

namespace korvane {
namespace {

// A configuration with one of everything that a value can clash with.
std::unique_ptr<ConfigModel> occupiedModel() {
    auto model = std::make_unique<ConfigModel>();
    test::editTables(*model, [](ConfigTables& tables) {
        MultiplexFrame first = test::frame(3, {test::service(1, 100)});
        first.timeSlots.resize(30);
        first.timeSlots[29] = 36;
        tables.continuous.frames.append(first);
        tables.continuous.frames.append(test::frame(4, {test::service(1, 200)}));
        tables.shortTime.frames.append(test::frame(9, {test::service(1, 900)}));
        tables.caDescriptions.entries.append({11, 100, 128, 129, 0, 0});
        tables.caDescriptions.entries.append({12, 200, 128, 129, 0, 0});
    });
    return model;
}

struct CheckCase {
    const char* what;
    std::function<int(ConfigChecks&)> check;
    int result;
    const char* message;
};

class Checks : public testing::TestWithParam<CheckCase> {};

TEST_P(Checks, AnswerAndSayWhy) {
    const auto model = occupiedModel();
    const auto before = copyOf(model->tables());
    test::ScriptedPrompts prompts;
    ConfigChecks checks(*model, prompts);
    EXPECT_EQ(GetParam().check(checks), GetParam().result);
    std::vector<std::string> expected;
    if (GetParam().result != 0) expected.push_back(std::string("warn ") + GetParam().message);
    EXPECT_EQ(prompts.log, expected);
    EXPECT_TRUE(model->tables() == *before);
}

#define CHECK_CASE(call, ...)                                                 \
    CheckCase {                                                               \
#call, [](ConfigChecks & checks) { return checks.call; }, __VA_ARGS__ \
    }

INSTANTIATE_TEST_SUITE_P(
    Boundaries, Checks,
    testing::Values(
        CHECK_CASE(checkInputChannelAddress({10, 1, 2, 4}, 1, false), 0, ""),
        CHECK_CASE(checkFrameId(39), 0, ""),
        CHECK_CASE(checkFrameId(40), -2, "复用帧标识应在0~39之间"),
        CHECK_CASE(checkFrameId(65535), -2, "复用帧标识应在0~39之间"),
        CHECK_CASE(checkFrameId(4), -1, "已有相同标识的复用帧"),
        CHECK_CASE(checkFrameId(9), 0, ""),  // of the other table
        CHECK_CASE(checkTimeSlotCount(3), 0, ""),
        CHECK_CASE(checkTimeSlotCount(4), -1, "已达最大时隙数，超出时隙数(1)"),
        CHECK_CASE(checkTimeSlotCount(40), -1, "已达最大时隙数，超出时隙数(37)"),
        CHECK_CASE(checkTimeSlotCount(0x103), 0, ""),
        CHECK_CASE(checkServiceId(0, 100), 0, ""),  // its own frame is not looked at
        CHECK_CASE(checkServiceId(0, 65535), 0, ""),
        CHECK_CASE(checkServiceId(0, 65536), -1, "业务标识必须在0~65535之间"),
        CHECK_CASE(checkServiceId(0, 200), -2, "已有相同标识的业务"),
        CHECK_CASE(checkServiceId(-1, 100), -2, "已有相同标识的业务"),
        CHECK_CASE(checkServiceId(0, 900), 0, ""),  // of the other table
        CHECK_CASE(checkCaSystem(13, 300, true, true), 0, ""),
        CHECK_CASE(checkCaSystem(12, 300, true, true), -1, "已有相同的CA System ID"),
        CHECK_CASE(checkCaSystem(13, 200, true, true), -2, "已有相同的业务标识"),
        CHECK_CASE(checkCaSystem(12, 100, true, true), -2, "已有相同的业务标识"),  // first entry
        CHECK_CASE(checkCaSystem(12, 200, true, true), -1, "已有相同的CA System ID"),
        CHECK_CASE(checkCaSystem(12, 200, false, true), -2, "已有相同的业务标识"),
        CHECK_CASE(checkCaSystem(12, 200, false, false), 0, ""), CHECK_CASE(checkPid(8191), 0, ""),
        CHECK_CASE(checkPid(8192), -1, "PID必须在0~0x1fff之间"),
        CHECK_CASE(checkMacAddress("00112233445A"), 0, ""),
        CHECK_CASE(checkMacAddress("00112233445G"), 0, ""),
        CHECK_CASE(checkMacAddress("fEzz11223344"), 0, ""),
        CHECK_CASE(checkMacAddress("0011223344"), -1, "MAC地址必须为12个16进制字符"),
        CHECK_CASE(checkMacAddress("001122334455A"), -1, "MAC地址必须为12个16进制字符"),
        CHECK_CASE(checkMacAddress("00-112233445"), -2, "MAC地址存在非法字符"),
        CHECK_CASE(checkMacAddress("01-112233445"), -2, "MAC地址存在非法字符"),
        CHECK_CASE(checkMacAddress("011122334455"), -3, "MAC地址第1个字节不能为奇数"),
        CHECK_CASE(checkMacAddress("0F1122334455"), -3, "MAC地址第1个字节不能为奇数"),
        CHECK_CASE(checkDataUnitType(127), -1, "数据单元类型必须在128~159之间"),
        CHECK_CASE(checkDataUnitType(128), 0, ""), CHECK_CASE(checkDataUnitType(159), 0, ""),
        CHECK_CASE(checkDataUnitType(160), -1, "数据单元类型必须在128~159之间"),
        CHECK_CASE(checkDeviceNumber(65535), 0, ""),
        CHECK_CASE(checkDeviceNumber(65536), -1, "设备号必须在0~65535之间")),
    [](const auto& one) {
        return test::testName(std::to_string(one.index) + "_" + one.param.what);
    });

TEST(TimeSlotCheck, CountsFromZeroWithoutAnySlot) {
    const auto model = std::make_unique<ConfigModel>();
    test::ScriptedPrompts prompts;
    ConfigChecks checks(*model, prompts);
    EXPECT_TRUE(checks.checkTimeSlotCount(39) == 0 && checks.checkTimeSlotCount(40) == -1);
}

}  // namespace
}  // namespace korvane
