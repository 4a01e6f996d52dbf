#include "panel/panel_commands.h"

#include <cstring>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/configurations.h"
#include "support/recording_sink.h"
#include "support/scratch_directory.h"
#include "support/scripted_link.h"
#include "support/scripted_prompts.h"

namespace korvane {
namespace {

using test::frameOf;
using testing::ElementsAre;
using testing::IsEmpty;

using Log = std::vector<std::string>;

constexpr const char* filter = "korvane Files (*.dat)|*.dat|All Files (*.*)|*.*||";

class PanelCommandsTest : public testing::Test, protected Pages, protected TransferRunner {
  protected:
    void SetUp() override {
        // Without the poller: only the commands' own exchanges are of interest.
        ASSERT_EQ(manager_.client().Start("10.1.2.3"), 0);
        manager_.model().setDeviceKey("10.1.2.3");
        manager_.model().setFlatChannels({});
    }

    void refresh() override { prompts_.log.push_back("refresh"); }
    void commit() override { prompts_.log.push_back("commit"); }
    int check() override {
        prompts_.log.push_back("check");
        return checkResult_;
    }
    int run(const Start& start) override {
        prompts_.log.push_back("transfer");
        if (transferResult_) return *transferResult_;
        const auto sink = std::make_shared<test::RecordingSink>();
        return start(sink) == 0 ? sink->outcome() : -1;
    }

    Log takeLog() { return std::exchange(prompts_.log, {}); }
    // The next question gets Yes.
    void willAgree() { prompts_.answers = {true}; }
    Log saveLog() {
        willAgree();
        commands_.save();
        return takeLog();
    }
    bool cacheFileExists() const { return exists(directory_.path() / "10.1.2.3.dat"); }

    test::ScratchDirectory directory_;
    test::ScriptedLink link_;
    test::ScriptedPrompts prompts_;
    DeviceManager manager_{link_, directory_.path()};
    PanelCommands commands_{manager_, prompts_, *this, *this};
    std::optional<int> transferResult_ = 0;  // nothing: a real transfer
    int checkResult_ = 0;
};

TEST_F(PanelCommandsTest, SaveAsksThenCommitsThenChecksThenTransfers) {
    EXPECT_THAT(saveLog(),
                ElementsAre("ask 确认要将配置保存到设备?", "commit", "check", "transfer"));
    link_.now += 10000;
    commands_.save();
    EXPECT_THAT(takeLog(), ElementsAre("ask 确认要将配置保存到设备?")) << "declined";
    checkResult_ = -4;
    EXPECT_THAT(saveLog(), ElementsAre("ask 确认要将配置保存到设备?", "commit", "check"))
        << "the page has said why";
}

TEST_F(PanelCommandsTest, OnlyASuccessfulSaveStartsTheInterval) {
    transferResult_ = -2;
    saveLog();
    transferResult_ = 0;
    EXPECT_EQ(saveLog().back(), "transfer") << "the failed one counts for nothing";
    link_.now += 9999;
    EXPECT_THAT(saveLog(), ElementsAre("say 两次设置时间不能小于10秒"));
    commands_.restoreDefaults();
    EXPECT_THAT(takeLog(), ElementsAre("say 两次设置时间不能小于10秒"));
    commands_.load();
    EXPECT_THAT(takeLog(), ElementsAre("say 距离上次设置时间不能小于10秒"));
    link_.now += 1;
    EXPECT_EQ(saveLog().back(), "transfer");
}

TEST_F(PanelCommandsTest, LoadDoesNotStartTheInterval) {
    willAgree();
    commands_.load();
    EXPECT_THAT(takeLog(), ElementsAre("ask 确认要重新从设备获取配置吗?", "transfer", "refresh"));
    EXPECT_TRUE(cacheFileExists());
    EXPECT_EQ(saveLog().back(), "transfer");
}

TEST_F(PanelCommandsTest, AFailedLoadShowsNothingNewAndKeepsTheCache) {
    transferResult_ = 7;
    willAgree();
    commands_.load();
    EXPECT_THAT(takeLog(), ElementsAre("ask 确认要重新从设备获取配置吗?", "transfer",
                                       "say 与设备通信错误，请重试"));
    EXPECT_FALSE(cacheFileExists());
    commands_.load();
    EXPECT_THAT(takeLog(), ElementsAre("ask 确认要重新从设备获取配置吗?")) << "declined";
}

// Ticks start at 0 with the system and wrap; the sum that they are compared with wraps as well.
TEST_F(PanelCommandsTest, TheIntervalIsReckonedInWrappingTicks) {
    link_.now = 9999;
    EXPECT_THAT(saveLog(), ElementsAre("say 两次设置时间不能小于10秒")) << "compared with 0";
    link_.now = 0xFFFFFFFFu;
    EXPECT_EQ(saveLog().back(), "transfer");
    EXPECT_THAT(saveLog(), ElementsAre("say 两次设置时间不能小于10秒"));
    link_.now = 9998;  // the clock has wrapped: 9,999 ms later
    EXPECT_THAT(saveLog(), ElementsAre("say 两次设置时间不能小于10秒"));
    link_.now = 9999;
    EXPECT_EQ(saveLog().back(), "transfer");
}

TEST_F(PanelCommandsTest, TransferFailuresHaveTwoWordings) {
    const std::pair<int, const char*> cases[] = {
        {-8, "say 连接设备失败,请检查网络连接"},
        {-1, "say 与设备通信错误，请重试"},
        {1, "say 与设备通信错误，请重试"},
        {0x7FFFFFFF, "say 与设备通信错误，请重试"},
    };
    for (const auto& [result, text] : cases) {
        transferResult_ = result;
        EXPECT_EQ(saveLog().back(), text) << result;
    }
}

// The device hears which of the two it is: the first command of each sequence.
TEST_F(PanelCommandsTest, SaveSendsAndLoadFetches) {
    transferResult_.reset();
    link_.reachable = false;
    EXPECT_EQ(saveLog().back(), "say 连接设备失败,请检查网络连接");
    willAgree();
    commands_.load();
    EXPECT_EQ(takeLog().back(), "say 连接设备失败,请检查网络连接");
    manager_.Stop();
    ASSERT_EQ(link_.sent.size(), 2u);
    EXPECT_EQ(CommandFrame::read(link_.sent[0].bytes.data()).code, 1u);
    EXPECT_EQ(CommandFrame::read(link_.sent[1].bytes.data()).code, 2u);
}

TEST_F(PanelCommandsTest, RebootIsNeverRefusedByTheInterval) {
    saveLog();
    for (const auto& [status, text] : {std::pair{0u, "say 设备已接收到命令，正在重启中，请稍候!"},
                                       std::pair{5u, "say 与设备通信出错"}}) {
        link_.answers(frameOf(4001, status));
        willAgree();
        commands_.reboot();
        EXPECT_THAT(takeLog(), ElementsAre("ask 确认要重启设备吗?", text));
    }
    link_.reachable = false;
    willAgree();
    commands_.reboot();
    EXPECT_EQ(takeLog().back(), "say 连接设备失败，请检查网络连接") << "with the full-width comma";
}

TEST_F(PanelCommandsTest, ADeclinedCommandSendsNothing) {
    commands_.reboot();
    commands_.restoreDefaults();
    EXPECT_THAT(link_.sent, IsEmpty());
    EXPECT_THAT(takeLog(), ElementsAre("ask 确认要重启设备吗?", "ask 确认要使设备恢复默认值吗?"));
}

TEST_F(PanelCommandsTest, OnlyAcceptedDefaultsStartTheInterval) {
    link_.answers(frameOf(4002, 3));
    willAgree();
    commands_.restoreDefaults();
    EXPECT_EQ(takeLog().back(), "say 与设备通信出错");
    link_.answers(frameOf(4002, 0));
    willAgree();
    commands_.restoreDefaults();
    EXPECT_EQ(takeLog().back(), "say 设备已接收到命令，正在生效，请稍候刷新!");
    EXPECT_EQ(CommandFrame::read(link_.sent.back().bytes.data()).code, 4002u);
    EXPECT_THAT(saveLog(), ElementsAre("say 两次设置时间不能小于10秒"));
}

FlatChannelList oneChannel(std::uint16_t port) {
    FlatChannelList list;
    list.append(test::channel(ChannelType::Video, 7, port));
    return list;
}

TEST_F(PanelCommandsTest, ExportThenImportBringsBackWhatWasThere) {
    const auto file = directory_.path() / "site.ipr";
    manager_.model().setFlatChannels(oneChannel(5000));
    DeviceParamBlock params{};
    std::strcpy(params.controlMac.data(), "001122334455");
    manager_.model().setDeviceParams(params);
    prompts_.files = {file};
    commands_.exportFile();
    EXPECT_THAT(takeLog(), ElementsAre(std::string("save ipr ") + filter, "say 导出配置成功"));

    for (const bool withNetwork : {false, true}) {
        manager_.model().resetModel();
        prompts_.files = {file};
        prompts_.answers = {withNetwork};
        commands_.importFile();
        EXPECT_THAT(takeLog(), ElementsAre(std::string("open dat ") + filter,
                                           "ask/No 导入业务配置的同时，导入网络配置吗", "refresh",
                                           "say 导入配置成功"));
        EXPECT_EQ(manager_.model().flatChannels(), oneChannel(5000));
        EXPECT_STREQ(manager_.model().deviceParams().controlMac.data(),
                     withNetwork ? "001122334455" : "");
    }
}

TEST_F(PanelCommandsTest, ACancelledChooserDoesNothing) {
    commands_.exportFile();
    commands_.importFile();
    EXPECT_THAT(takeLog(),
                ElementsAre(std::string("save ipr ") + filter, std::string("open dat ") + filter));
}

TEST_F(PanelCommandsTest, AnExportThatCannotBeWrittenSaysSo) {
    prompts_.files = {directory_.path() / "missing" / "site.ipr"};
    commands_.exportFile();
    EXPECT_EQ(takeLog().back(), "say 导出配置出错");
}

// A file of an unknown version is noticed only after its channels have been taken.
TEST_F(PanelCommandsTest, AFailedImportChangesNothing) {
    const auto file = directory_.path() / "future.dat";
    manager_.model().setFlatChannels(oneChannel(6000));
    ASSERT_EQ(manager_.model().saveConfigFile(file), 0);
    std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).write("\x0D\x10", 2);

    manager_.model().setFlatChannels(oneChannel(5000));
    for (const auto& path : {file, directory_.path() / "none.dat"}) {
        prompts_.files = {path};
        prompts_.answers = {true};
        commands_.importFile();
        EXPECT_THAT(takeLog(),
                    ElementsAre(std::string("open dat ") + filter,
                                "ask/No 导入业务配置的同时，导入网络配置吗", "say 导入配置出错"));
        EXPECT_EQ(manager_.model().flatChannels(), oneChannel(5000));
    }
}

TEST(DeviceVersionText, ShowsPrintableTextOnly) {
    ParamBlock264 params{};
    EXPECT_EQ(deviceVersionText(params), "设备版本: 软件,硬件");
    std::memcpy(params.softwareVersion.data(), "V2.1\0\x01", 6);
    std::memcpy(params.hardwareVersion.data(), "0123456789ABCDEF", 16);
    EXPECT_EQ(deviceVersionText(params), "设备版本: 软件V2.1,硬件0123456789ABCDEF");
    std::memcpy(params.softwareVersion.data(), "V2\x80", 4);
    std::memcpy(params.hardwareVersion.data(), "\x1FV1", 4);
    EXPECT_EQ(deviceVersionText(params), "设备版本: 软件,硬件");
}

}  // namespace
}  // namespace korvane
