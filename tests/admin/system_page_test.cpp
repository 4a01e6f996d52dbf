#include "admin/system_page.h"

#include <gtest/gtest.h>

#include "host/robot.h"
#include "model/field_text.h"
#include "model/whole_file.h"
#include "panel/main_panel.h"
#include "resources/ids.h"
#include "support/scratch_directory.h"
#include "support/scripted_link.h"
#include "support/test_host.h"
#include "text/text.h"

namespace korvane {
namespace {

using host::Robot;

// The page in the panel, as an operator meets it.
class SystemPageTest : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(manager_.client().Start("127.0.0.9"), 0);
        DeviceParamBlock params{};
        params.controlPort.address = {"10.0.0.1"};
        params.controlPort.gateway = {"none"};
        params.controlMac = params.serviceMac = {"001122334455"};
        manager_.model().setDeviceParams(params);
        OutputParamBlock output{};
        output.systemBitRate = 8'000'000;
        manager_.model().setOutputParams(output);
        ASSERT_TRUE(panel_.create(host_.window()));
    }
    void TearDown() override { panel_.destroy(); }

    HWND at(const Robot& r, int id) const { return r.waitControl(panel_.hwnd(), id); }
    void press(const Robot& r, int button) const { r.click(panel_.hwnd(), button); }
    void answer(const Robot& r, const char* text, int button) const {
        r.answer(r.waitBox(text), button);
        r.settle();
    }
    HWND focused() const {
        HWND window = nullptr;
        host_.run([&] { window = GetFocus(); });
        return window;
    }

    test::TestHost host_;
    test::ScriptedLink link_;
    DeviceManager manager_{link_, "."};
    HWND window_ = nullptr;
    MainPanel panel_{manager_, window_};
};

TEST_F(SystemPageTest, ItsEntriesReachTheDeviceByItsOwnButton) {
    for (const std::uint32_t code : {100u, 102u}) link_.answers(test::frameOf(code, 0));
    host::RobotThread([&](Robot& r) {
        press(r, IDC_SHOW_SYSTEM);
        EXPECT_TRUE(r.send(at(r, IDC_CONTROL_GATEWAY), IPM_ISBLANK));
        r.fill(GetParent(at(r, IDC_CONTROL_MAC)), {{IDC_CONTROL_ADDRESS, "10.0.0.77"},
                                                   {IDC_SERVICE_MAC, "0255"},
                                                   {IDC_UPDATE_ADVANCE, "2"},
                                                   {IDC_CLOCK_SOURCE, "外部时钟"},
                                                   {IDC_ALARM_TOD, "1"}});
        press(r, IDC_APPLY_SETTINGS);
        answer(r, "确认要修改网络设置吗?", IDYES);
        answer(r, "MAC地址必须为12个16进制字符", IDOK);
        EXPECT_EQ(focused(), at(r, IDC_SERVICE_MAC));
        r.fill(GetParent(at(r, IDC_CONTROL_MAC)), {{IDC_SERVICE_MAC, "02554433AABB"}});
        press(r, IDC_APPLY_SETTINGS);
        answer(r, "确认要修改网络设置吗?", IDYES);
        answer(r, "网络设置修改成功，是否重启设备?", IDNO);
    }).finish();
    const DeviceParamBlock& params = manager_.model().deviceParams();
    EXPECT_EQ(fieldText(params.controlPort.address), "10.0.0.77");
    EXPECT_EQ(fieldText(params.controlPort.gateway), "none");
    EXPECT_EQ(fieldText(params.serviceMac), "02554433AABB");
    const OutputParamBlock& output = manager_.model().tables().outputParams;
    EXPECT_EQ(output.updateSequenceAdvance, 2);
    EXPECT_EQ(output.clockSource, 1);
    EXPECT_EQ(output.alarmSwitches, 8 + 64);
    EXPECT_TRUE(link_.scriptPlayed());
}

TEST_F(SystemPageTest, AWrongEntryComesToTheFrontBeforeASaveIsRefused) {
    link_.now = 100'000;
    host::RobotThread([&](Robot& r) {
        press(r, IDC_SHOW_SYSTEM);
        r.fill(GetParent(at(r, IDC_SYSTEM_RATE)), {{IDC_SYSTEM_RATE, "50001"}});
        press(r, IDC_SHOW_INPUT_CHANNELS);
        press(r, IDC_SAVE_TO_DEVICE);
        answer(r, "确认要将配置保存到设备?", IDYES);
        answer(r, "系统码率应在1000Kbps~50000Kbps之间", IDOK);
        EXPECT_TRUE(IsWindowVisible(at(r, IDC_SYSTEM_RATE)));
        EXPECT_EQ(focused(), at(r, IDC_SYSTEM_RATE));
    }).finish();
    EXPECT_TRUE(link_.sent.empty());
}

// A file of another name is not taken; the question before the upgrade has No preset.
TEST_F(SystemPageTest, ChoosesFirmwareAndAsksBeforeItIsSent) {
    const test::ScratchDirectory directory;
    const auto choose = [&](Robot& r, const char* name) {
        replaceFile(directory.path() / name, {});
        press(r, IDC_BROWSE_FIRMWARE);
        const HWND chooser = r.waitDialog("打开");
        r.chooseFile(chooser, directory.path() / name);
        r.waitGone(chooser);
    };
    host::RobotThread([&](Robot& r) {
        press(r, IDC_SHOW_SYSTEM);
        choose(r, "vxWorks");
        choose(r, "vxworks.out");
        answer(r, "文件名不正确，请检查是否为复用器的升级文件", IDOK);
        EXPECT_EQ(r.text(at(r, IDC_FIRMWARE_FILE)),
                  toUtf8((directory.path() / "vxWorks").wstring()));
        press(r, IDC_UPGRADE);
        EXPECT_EQ(r.boxDefault(r.waitBox("确认要进行设备升级吗？")), IDNO);
        answer(r, "确认要进行设备升级吗？", IDNO);
    }).finish();
    EXPECT_TRUE(link_.sent.empty());
}

}  // namespace
}  // namespace korvane
