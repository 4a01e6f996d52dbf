#include "admin/system_form.h"

#include <algorithm>

#include "admin/device_settings.h"
#include "model/field_text.h"
#include "model/object_bytes.h"
#include "resources/ids.h"
#include "support/editing_fixture.h"
#include "support/scripted_link.h"

namespace korvane {
namespace {

// Texts with something behind their ends.
DeviceParamBlock deviceParams() {
    DeviceParamBlock params;
    std::ranges::fill(writableBytesOf(params), std::uint8_t{'~'});
    DeviceParamBlock::Text* const fields[] = {&params.controlPort.address,
                                              &params.controlPort.subnetMask,
                                              &params.controlPort.gateway,
                                              &params.managementHost,
                                              &params.controlMac,
                                              &params.servicePort.address,
                                              &params.servicePort.subnetMask,
                                              &params.servicePort.gateway,
                                              &params.serviceMac};
    const std::string_view texts[] = {"10.0.0.1",    "255.0.0.0",    "10.0.0.2",
                                      "10.0.0.3",    "00aa00000001", "10.1.0.1",
                                      "255.255.0.0", "10.1.0.2",     "00bb00000002"};
    for (std::size_t i = 0; i < std::size(fields); ++i) {
        std::ranges::copy(texts[i], fields[i]->begin());
        (*fields[i])[texts[i].size()] = '\0';
    }
    return params;
}

class System : public test::EditingFixture {
  protected:
    System() {
        model_->setDeviceParams(deviceParams());
        OutputParamBlock output;
        std::ranges::fill(writableBytesOf(output), std::uint8_t{0x5A});
        output.pmsPid = 0x1FFF;
        output.deviceNumber = 65535;
        output.timeLabelEnabled = 0;
        output.updateSequenceAdvance = 1;
        output.sendNextFrameParameters = 1;
        output.transmitDelaySeconds = 5;
        output.clockSource = 1;
        output.isBackup = 0;
        output.backupAddress = {10, 1, 2, 3};
        output.alarmSwitches = 8 + 32;
        output.systemBitRate = 8'000'500;
        model_->setOutputParams(output);
        page_.show();
    }

    const OutputParamBlock& output() const { return tables().outputParams; }
    bool paramsAre(const DeviceParamBlock& params) const {
        return std::ranges::equal(bytesOf(model_->deviceParams()), bytesOf(params));
    }

    SystemForm form_{*model_, prompts_};
    Controls controls_;
    FormExchange page_{form_, controls_, prompts_};
};

TEST_F(System, ShowsEachValueAndGathersItUntouchedBitForBit) {
    const std::map<int, std::string> texts = {{IDC_CONTROL_MAC, "00aa00000001"},
                                              {IDC_SERVICE_MAC, "00bb00000002"},
                                              {IDC_PMS_PID, "8191"},
                                              {IDC_DEVICE_NUMBER, "65535"},
                                              {IDC_TRANSMIT_DELAY, "5"},
                                              {IDC_SYSTEM_RATE, "8000"}};
    EXPECT_EQ(controls_.texts, texts);
    const std::map<int, std::optional<Ipv4>> addresses = {
        {IDC_CONTROL_ADDRESS, Ipv4{10, 0, 0, 1}}, {IDC_CONTROL_SUBNET_MASK, Ipv4{255, 0, 0, 0}},
        {IDC_CONTROL_GATEWAY, Ipv4{10, 0, 0, 2}}, {IDC_MANAGEMENT_HOST, Ipv4{10, 0, 0, 3}},
        {IDC_SERVICE_ADDRESS, Ipv4{10, 1, 0, 1}}, {IDC_SERVICE_SUBNET_MASK, Ipv4{255, 255, 0, 0}},
        {IDC_SERVICE_GATEWAY, Ipv4{10, 1, 0, 2}}, {IDC_BACKUP_ADDRESS, Ipv4{10, 1, 2, 3}}};
    EXPECT_EQ(controls_.addresses, addresses);
    const std::map<int, bool> checks = {{IDC_TIME_LABEL, false}, {IDC_NEXT_FRAME_PARAMETERS, true},
                                        {IDC_IS_BACKUP, false},  {IDC_ALARM_1PPS, false},
                                        {IDC_ALARM_10M, true},   {IDC_ALARM_TOD, false}};
    EXPECT_EQ(controls_.checks, checks);
    EXPECT_EQ(controls_.selections, (std::map<int, int>{{1071, 1}, {1072, 1}}));
    EXPECT_EQ(controls_.items[IDC_UPDATE_ADVANCE], (std::vector<std::string>{"0", "1", "2"}));
    EXPECT_EQ(controls_.items[IDC_CLOCK_SOURCE],
              (std::vector<std::string>{"内部时钟", "外部时钟"}));

    const OutputParamBlock before = output();
    EXPECT_EQ(form_.gather(), 0);
    EXPECT_EQ(output(), before);
    EXPECT_TRUE(paramsAre(deviceParams()));
    EXPECT_FALSE(page_.changed());
    EXPECT_EQ(said(), "");
}

// Each entry goes to its own place, and nothing else moves.
TEST_F(System, StoresEachEntryWhereItBelongs) {
    OutputParamBlock wanted = output();
    DeviceParamBlock params = deviceParams();
    DeviceParamBlock::Text* const places[] = {
        &params.controlPort.address, &params.controlPort.subnetMask, &params.controlPort.gateway,
        &params.managementHost,      &params.servicePort.address,    &params.servicePort.subnetMask,
        &params.servicePort.gateway};
    constexpr int boxes[] = {1061, 1017, 1022, 1027, 1081, 1020, 1031};
    for (std::uint8_t i = 0; i < std::size(boxes); ++i) {
        controls_.addresses[boxes[i]] = {{192, 168, 100, i}};
        *places[i] = {};
        std::ranges::copy("192.168.100." + std::to_string(i), places[i]->begin());
    }
    controls_.texts[1060] = "00112233445A";
    controls_.texts[1074] = "02Gz33445566";  // letters beyond F are the device's matter
    params.controlMac = {"00112233445A"};
    params.serviceMac = {"02Gz33445566"};
    controls_.texts[1063] = "0";
    controls_.texts[1065] = "7";
    controls_.texts[1067] = "300";
    controls_.texts[1109] = "50000";
    controls_.addresses[1033] = {{9, 8, 7, 6}};
    controls_.selections = {{1071, 0}, {1072, 2}};
    for (auto& [id, checked] : controls_.checks) checked = !checked;
    wanted.pmsPid = 0;
    wanted.deviceNumber = 7;
    wanted.transmitDelaySeconds = 44;  // 8 bits of 300
    wanted.systemBitRate = 50'000'000;
    wanted.backupAddress = {9, 8, 7, 6};
    wanted.clockSource = 0;
    wanted.updateSequenceAdvance = 2;
    wanted.timeLabelEnabled = wanted.isBackup = 1;
    wanted.sendNextFrameParameters = 0;
    wanted.alarmSwitches = 8 + 16 + 64;
    EXPECT_EQ(form_.gather(), 0);
    EXPECT_EQ(output(), wanted);
    EXPECT_TRUE(paramsAre(params));
    EXPECT_FALSE(page_.changed()) << "it has been taken";
}

// Values that no control can show are brought to what the control shows, as the device knows no
// others.
TEST_F(System, MakesFlagsAndChoicesWhatTheyShow) {
    OutputParamBlock odd = output(), wanted = odd;
    odd.timeLabelEnabled = odd.sendNextFrameParameters = odd.clockSource = odd.isBackup = 9;
    wanted.timeLabelEnabled = wanted.sendNextFrameParameters = 1;
    wanted.clockSource = wanted.isBackup = 1;
    odd.alarmSwitches = 0xE0 - 0x40;
    wanted.alarmSwitches = 8 + 32;
    odd.updateSequenceAdvance = 3;
    wanted.updateSequenceAdvance = 0;
    model_->setOutputParams(odd);
    page_.show();
    EXPECT_EQ(controls_.selections, (std::map<int, int>{{1071, 1}, {1072, 0}}));
    EXPECT_EQ(form_.gather(), 0);
    EXPECT_EQ(output(), wanted);
}

TEST_F(System, TextsThatAreNoAddressesShowAsNoneAndStayUntilOneIsEntered) {
    DeviceParamBlock params = deviceParams();
    params.managementHost = {"gateway"};
    for (const DeviceParamBlock::Text& none :
         {DeviceParamBlock::Text{"10.0.0.256"}, {"0010.0.0.1"}, {"10.0.0.1.2"}, {"10.0.0"}, {}}) {
        params.controlPort.gateway = none;
        model_->setDeviceParams(params);
        page_.show();
        EXPECT_EQ(controls_.addresses[IDC_CONTROL_GATEWAY], std::nullopt) << none.data();
    }
    controls_.addresses[IDC_MANAGEMENT_HOST] = {{10, 0, 0, 9}};
    EXPECT_EQ(form_.gather(), 0);
    params.managementHost = {"10.0.0.9"};
    EXPECT_TRUE(paramsAre(params));
}

// What comes first is told first; the network settings are stored before the rest is looked at.
TEST_F(System, RefusesInOrderWithItsResultAndReturnsToTheEntry) {
    const std::string range = "请输入 0 和 65535 之间的整数。";
    const std::string rate = "系统码率应在1000Kbps~50000Kbps之间";
    const struct {
        std::map<int, std::string> entries;
        int result, focus;
        std::string message;
        bool paramsStored;
    } cases[] = {
        {{{1065, "65536"}, {1060, ""}, {1063, "8192"}}, -5, 1065, range, false},
        {{{1109, "x"}, {1060, ""}}, -5, 1109, "请输入一个整数。", false},
        {{{1060, "01112233445A"}, {1063, "8192"}}, -1, 1060, "MAC地址第1个字节不能为奇数", false},
        {{{1074, "0011223344-A"}, {1063, "8192"}}, -1, 1074, "MAC地址存在非法字符", false},
        {{{1074, "00112233445"}}, -1, 1074, "MAC地址必须为12个16进制字符", false},
        {{{1063, "8192"}, {1109, "1"}}, -2, 1063, "PID必须在0~0x1fff之间", true},
        {{{1063, "65536"}}, -2, 1063, "PID必须在0~0x1fff之间", true},
        {{{1109, "999"}}, -4, 1109, rate, true},
        {{{1109, "50001"}}, -4, 1109, rate, true},
    };
    const OutputParamBlock before = output();
    for (const auto& [entries, result, focus, message, paramsStored] : cases) {
        model_->setDeviceParams(deviceParams());
        page_.show();
        controls_.addresses[IDC_MANAGEMENT_HOST] = {{1, 2, 3, 4}};
        for (const auto& [id, text] : entries) controls_.texts[id] = text;
        EXPECT_EQ(form_.gather(), result) << message;
        EXPECT_EQ(said(), "warn " + message + '\n');
        EXPECT_EQ(controls_.focused, focus) << message;
        EXPECT_EQ(output(), before) << message;
        EXPECT_EQ(fieldText(model_->deviceParams().managementHost),
                  paramsStored ? "1.2.3.4" : "10.0.0.3")
            << message;
        for (const auto& [id, text] : entries) EXPECT_EQ(controls_.texts[id], text);
    }
    controls_.texts[1109] = "1000";
    EXPECT_EQ(form_.gather(), 0);
}

// A device's own values are no better for being untouched.
TEST_F(System, ChecksWhatNobodyTouchedToo) {
    OutputParamBlock wrong = output();
    wrong.systemBitRate = 999'999;
    model_->setOutputParams(wrong);
    page_.show();
    EXPECT_EQ(form_.gather(), -4);
}

// Every step is asked, sent and answered for itself.
TEST_F(System, SendsTheNetworkSettingsAndOffersTheRestart) {
    const std::string ask = "ask 确认要修改网络设置吗?\n", sent = "busy 0\n",
                      restart = "ask 网络设置修改成功，是否重启设备?\n";
    const struct {
        std::vector<bool> answers;
        const char* pid;
        std::vector<std::uint32_t> statuses;  // of the device's answers
        std::string said, codes;
    } cases[] = {
        {{false}, "1", {}, ask, ""},
        {{true}, "9999", {}, ask + "warn PID必须在0~0x1fff之间\n", ""},
        {{true}, "1", {7}, ask + "busy 7\nwarn 与设备通道错误!\n", "100 "},
        {{true}, "1", {0, 8}, ask + "busy 8\nwarn 与设备通道错误!\n", "100 102 "},
        {{true, false}, "1", {0, 0}, ask + sent + restart, "100 102 "},
        {{true, true},
         "1",
         {0, 0, 9},
         ask + sent + restart + "busy 9\nwarn 与设备通信出错，重启设备失败!\n",
         "100 102 4001 "},
        {{true, true},
         "1",
         {0, 0, 0},
         ask + sent + restart + sent + "say 设备已收到命令，正在重启中，请稍候!\n",
         "100 102 4001 "},
    };
    for (const auto& [answers, pid, statuses, expected, codes] : cases) {
        constexpr std::array<std::uint32_t, 3> commands = {100, 102, 4001};
        test::ScriptedLink link;
        for (std::size_t i = 0; i < statuses.size(); ++i)
            link.answers(test::frameOf(commands[i], statuses[i]));
        DeviceManager manager(link, ".");
        ASSERT_EQ(manager.client().Start("10.1.2.3"), 0);
        manager.model().setDeviceParams(deviceParams());
        manager.model().setOutputParams(output());
        prompts_.answers = {answers.begin(), answers.end()};
        SystemForm form(manager.model(), prompts_);
        Controls controls;
        FormExchange page(form, controls, prompts_);
        page.show();
        manager.work().begin(true);
        controls.texts[IDC_PMS_PID] = pid;
        controls.addresses[IDC_SERVICE_GATEWAY] = {{10, 1, 0, 99}};
        DeviceSettings(form, manager, prompts_).apply();
        std::string found;
        for (const auto& one : link.sent)
            found += std::to_string(CommandFrame::read(one.bytes.data()).code) + ' ';
        EXPECT_EQ(said(), expected);
        EXPECT_EQ(found, codes) << expected;
        const bool taken = statuses.size() > 1 && statuses[1] == 0;
        manager.model().setOutputParams(output());  // go with the next save
        EXPECT_EQ(manager.tendWork() == KeptWork::Notice::Edited, answers[0] && !taken) << expected;
        if (codes.empty()) continue;
        const auto settings = bytesOf(manager.model().deviceParams());
        EXPECT_TRUE(std::ranges::equal(settings,
                                       std::span(link.sent[0].bytes).subspan(CommandFrame::size)));
        EXPECT_EQ(fieldText(manager.model().deviceParams().servicePort.gateway), "10.1.0.99");
    }
}

}  // namespace
}  // namespace korvane
