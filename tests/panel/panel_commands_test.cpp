#include "panel/panel_commands.h"

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>

#include "model/config_file.h"
#include "model/whole_file.h"
#include "panel/panel_pages.h"
#include "panel/table_pages.h"
#include "support/configurations.h"
#include "support/recorded_log.h"
#include "support/recording_sink.h"
#include "support/scratch_directory.h"
#include "support/scripted_link.h"
#include "support/scripted_prompts.h"

namespace korvane {
namespace {

using Log = std::vector<std::string>;

// Notes what is asked of it, by its number.
class RecordingPage : public PageContent {
  public:
    RecordingPage(int number, Log& log) : name_(std::to_string(number)), log_(log) {}
    void refresh() override { log_.push_back("refresh " + name_); }
    bool commit() override {
        log_.push_back("commit " + name_);
        return commits;
    }
    bool changed() const override { return entered; }
    int check() override {
        log_.push_back("check " + name_);
        return checkResult;
    }
    bool commits = true, entered = false;
    int checkResult = 0;

  private:
    std::string name_;
    Log& log_;
};

class PanelCommandsTest : public testing::Test, protected TransferRunner {
  protected:
    using Command = void (PanelCommands::*)();
    static constexpr Command save = &PanelCommands::save, load = &PanelCommands::load,
                             reboot = &PanelCommands::reboot,
                             restore = &PanelCommands::restoreDefaults,
                             exportFile = &PanelCommands::exportFile,
                             importFile = &PanelCommands::importFile;

    void SetUp() override {
        // Without the poller: only the commands' own exchanges are of interest.
        ASSERT_EQ(manager_.client().Start("10.1.2.3"), 0);
        manager_.model().setDeviceKey("10.1.2.3");
    }

    int run(const Start& start) override {
        log_.push_back("transfer");
        if (answer_) return *answer_;
        const auto sink = std::make_shared<test::RecordingSink>();
        return start(sink) == 0 ? sink->outcome() : -1;
    }

    // What the operator sees, what is asked of the pages, what is sent and whether the cache file
    // is written, when the next questions get `agrees` and a chooser gets `file`.
    std::string press(Command command, bool agrees = true, const char* file = nullptr) {
        prompts_.answers = {agrees};
        if (file) prompts_.files = {directory_.path() / file};
        (commands_.*command)();
        for (const auto& sent : link_.sent)
            log_.push_back("sent " + std::to_string(CommandFrame::read(sent.bytes.data()).code));
        if (remove(directory_.path() / "10.1.2.3.dat")) log_.push_back("cached");
        return takeLog();
    }
    std::string takeLog() {
        std::string text;
        for (const std::string& line : std::exchange(log_, {})) text += line + '\n';
        return text;
    }

    test::ScratchDirectory directory_;
    test::ScriptedLink link_;
    test::ScriptedPrompts prompts_;
    Log& log_ = prompts_.log;
    RecordingPage page_[4] = {{0, log_}, {1, log_}, {2, log_}, {3, log_}};
    PanelPages pages_{{&page_[0], &page_[1], &page_[2], &page_[3]}};
    DeviceManager manager_{link_, directory_.path()};
    PanelCommands commands_{manager_, prompts_, pages_, *this};
    // Of the device, or of the transfer; nothing: a real one, to a device that is not there.
    std::optional<int> answer_ = 0;
};

const std::string filter = "korvane Files (*.dat)|*.dat|All Files (*.*)|*.*||\n";
const std::string exporting = "save ipr " + filter, opening = "open dat " + filter;
const std::string importing = opening + "ask/No 导入业务配置的同时，导入网络配置吗\n";
const std::string saving = "ask 确认要将配置保存到设备?\ncommit 1\ncheck 3\ntransfer\n";
const std::string loading = "ask 确认要重新从设备获取配置吗?\ntransfer\n";
const std::string refreshed = "refresh 0\nrefresh 1\nrefresh 3\n";
const std::string failed = "warn 与设备通信错误，请重试\n";
const std::string unreachable = "warn 连接设备失败,请检查网络连接\n";
const std::string restoring = "ask 确认要使设备恢复默认值吗?\n";
const std::string restored = "busy 0\nsay 设备已接收到命令，正在生效，请稍候刷新!\nsent 4002\n";
const std::string rebooting = "ask 确认要重启设备吗?\n";
const std::string rebooted = "busy 0\nsay 设备已接收到命令，正在重启中，请稍候!\nsent 4001\n";
const std::string refused = "warn 与设备通信出错\n";
const std::string absent =
    "busy -8\nwarn 连接设备失败，请检查网络连接\n";  // with the full-width comma
const std::string tooSoonToSet = "warn 两次设置时间不能小于10秒\n";
const std::string tooSoonToLoad = "warn 距离上次设置时间不能小于10秒\n";

// Only a save that succeeded and accepted defaults start the interval; a reboot never waits for it.
// Ticks start at 0 with the system and wrap; the first setting is reckoned from there.
TEST_F(PanelCommandsTest, TenSecondsPassBetweenASettingAndTheNextOrALoad) {
    constexpr std::uint32_t last = 0xFFFFFFFF;
    const struct {
        std::uint32_t now;
        Command command;
        std::optional<int> answer;
        std::string log;
    } steps[] = {
        {9999, save, 0, tooSoonToSet},
        {10000, save, {}, saving + unreachable + "sent 1\ncached\n"},
        {10000, save, -8, saving + unreachable},
        {10000, save, -1, saving + failed},
        {10000, save, 0x7FFFFFFF, saving + failed},
        {10000, load, {}, loading + unreachable + "sent 2\n"},
        {10000, load, 7, loading + failed},
        {10000, load, 0, loading + refreshed + "cached\n"},
        {10000, restore, {}, restoring + absent + "sent 4002\n"},
        {10000, restore, 3, restoring + "busy 3\n" + refused + "sent 4002\n"},
        {10000, save, 0, saving},
        {19999, save, 0, tooSoonToSet},
        {19999, restore, 0, tooSoonToSet},
        {19999, load, 0, tooSoonToLoad},
        {19999, reboot, 0, rebooting + rebooted},
        {19999, reboot, 5, rebooting + "busy 5\n" + refused + "sent 4001\n"},
        {19999, reboot, {}, rebooting + absent + "sent 4001\n"},
        {20000, restore, 0, restoring + restored},
        {29999, save, 0, tooSoonToSet},
        {30000, load, 0, loading + refreshed + "cached\n"},
        {last, save, 0, saving},
        {last, save, 0, tooSoonToSet},
        {9998, save, 0, tooSoonToSet},
        {9999, save, 0, saving},
    };
    for (const auto& [now, command, answer, log] : steps) {
        link_ = test::ScriptedLink();
        link_.now = now;
        link_.reachable = answer.has_value();
        if (answer)
            link_.answers(test::frameOf(command == reboot ? 4001 : 4002,
                                        static_cast<std::uint32_t>(*answer)));
        answer_ = answer;
        EXPECT_EQ(press(command, false), log.substr(0, log.find('\n') + 1)) << "declined";
        EXPECT_EQ(press(command), log) << now;
    }
}

// The page has said why.
TEST_F(PanelCommandsTest, NothingIsSavedWhileAFieldIsWrong) {
    page_[3].checkResult = -4;
    EXPECT_EQ(press(save) + "transfer\n", saving);
    page_[3].checkResult = 0;
    page_[1].commits = false;
    EXPECT_EQ(press(save) + "check 3\ntransfer\n", saving);
    page_[1].commits = true;
    EXPECT_EQ(press(save), saving) << "no interval has begun";
}

TEST_F(PanelCommandsTest, AnExportTakesWhatWasEnteredAndNothingElse) {
    page_[1].entered = true;
    EXPECT_EQ(press(exportFile), "commit 1\n" + exporting);
    page_[3].entered = true;
    EXPECT_EQ(press(exportFile), "commit 1\ncheck 3\n" + exporting);
    page_[3].checkResult = -1;
    EXPECT_EQ(press(exportFile), "commit 1\ncheck 3\n");
    page_[1].commits = false;
    EXPECT_EQ(press(exportFile), "commit 1\n");
}

FlatChannelList oneChannel(std::uint16_t port) {
    FlatChannelList list;
    list.append(test::channel(ChannelType::Video, 7, port));
    return list;
}

TEST_F(PanelCommandsTest, ExportThenImportBringsBackWhatWasThere) {
    ConfigModel& model = manager_.model();
    model.setFlatChannels(oneChannel(5000));
    DeviceParamBlock params{};
    std::strcpy(params.controlMac.data(), "001122334455");
    model.setDeviceParams(params);
    EXPECT_EQ(press(exportFile, true, "site.ipr"), exporting + "say 导出配置成功\n");
    for (const bool withNetwork : {false, true}) {
        model.resetModel();
        EXPECT_EQ(press(importFile, withNetwork, "site.ipr"),
                  importing + refreshed + "say 导入配置成功\n");
        EXPECT_EQ(model.flatChannels(), oneChannel(5000));
        EXPECT_STREQ(model.deviceParams().controlMac.data(), withNetwork ? "001122334455" : "");
    }
}

TEST_F(PanelCommandsTest, AnImportNamesTheChannelsThatItHadToLeaveOut) {
    auto bytes = config_file::encode(*std::make_unique<Configuration>());
    std::vector<std::uint8_t> channels(82 * sizeof(InputChannelRecord));
    channels[60 * sizeof(InputChannelRecord) + 7] = 9;
    bytes[32] = 82;
    bytes.insert(bytes.begin() + sizeof(config_file::Header), channels.begin(), channels.end());
    ASSERT_TRUE(replaceFile(directory_.path() / "full.dat", bytes));
    test::RecordedLog log;
    std::string named = "\n视频 0.0.0.9:0";
    for (int i = 1; i < 20; ++i) named += "\n视频 0.0.0.0:0";
    EXPECT_EQ(press(importFile, true, "full.dat"),
              importing + refreshed +
                  "say 导入配置成功\nwarn 文件中的输入通道超过60个，以下通道未导入:" + named +
                  "\n等22个\n");
    EXPECT_EQ(manager_.model().flatChannels().size(), 60u);
    EXPECT_EQ(log.count("0 导入配置文件"), 1);
    EXPECT_EQ(log.count("full.dat, 结果0"), 1);
}

// The way back is where the chooser opens, unless something else was done meanwhile.
TEST_F(PanelCommandsTest, AfterARestoreAnImportBeginsAtTheBackups) {
    manager_.work().begin(true);
    const auto restoreDefaults = [&] {
        link_.now += 10000;
        link_.answers(test::frameOf(4002, 0));
        press(restore);
    };
    restoreDefaults();
    EXPECT_EQ(
        std::distance(std::filesystem::directory_iterator(manager_.work().backupFolder()), {}), 1);
    link_.sent.clear();
    EXPECT_EQ(press(importFile), opening + "in backup\n");
    EXPECT_EQ(press(importFile), opening);
    restoreDefaults();
    link_.sent.clear();
    press(reboot, false);
    EXPECT_EQ(press(importFile), opening);
}

TEST_F(PanelCommandsTest, WhatIsRecoveredIsShownAndWhatIsNotWantedIsNotOffered) {
    ConfigModel& model = manager_.model();
    model.setFlatChannels(oneChannel(5000));
    for (const bool wanted : {true, false}) {
        ASSERT_EQ(model.saveConfigFile(model.deviceFile(u8".unsaved.dat")), 0);
        model.resetModel();
        manager_.work().begin(false);
        ASSERT_EQ(manager_.tendWork(), KeptWork::Notice::FromLastTime);
        EXPECT_EQ(press(wanted ? &PanelCommands::recoverWork : &PanelCommands::discardWork),
                  wanted ? refreshed : "");
        EXPECT_EQ(model.flatChannels().size(), wanted ? 1u : 0u);
        EXPECT_EQ(manager_.tendWork(), wanted ? KeptWork::Notice::Edited : KeptWork::Notice::None);
    }
}

// A file of an unknown version is noticed only after its channels have been taken.
TEST_F(PanelCommandsTest, WhatFailsOrIsCancelledChangesNothing) {
    ConfigModel& model = manager_.model();
    const auto file = directory_.path() / "future.dat";
    model.setFlatChannels(oneChannel(6000));
    ASSERT_EQ(model.saveConfigFile(file), 0);
    std::fstream(file, std::ios::in | std::ios::out | std::ios::binary).write("\x0D\x10", 2);
    model.setFlatChannels(oneChannel(5000));
    EXPECT_EQ(press(exportFile), exporting);
    EXPECT_EQ(press(importFile), opening);
    EXPECT_EQ(press(exportFile, true, "missing/site.ipr"), exporting + "warn 导出配置出错\n");
    for (const char* path : {"future.dat", "none.dat"}) {
        EXPECT_EQ(press(importFile, true, path), importing + "warn 导入配置出错\n");
        EXPECT_EQ(model.flatChannels(), oneChannel(5000)) << path;
    }
}

TEST_F(PanelCommandsTest, TheTableThatIsLeftCommitsBeforeTheNextIsFilled) {
    TablePages tables({&page_[0], &page_[1], &page_[2]});
    EXPECT_EQ(tables.selected(), 0u);
    for (const std::size_t next : {2u, 1u}) EXPECT_TRUE(tables.select(next));
    for (const std::size_t none : {std::size_t{1}, std::size_t{3}, SIZE_MAX})
        EXPECT_FALSE(tables.select(none));
    EXPECT_EQ(tables.selected(), 1u);
    tables.refresh();
    tables.commit();
    EXPECT_EQ(takeLog(), "commit 0\nrefresh 2\ncommit 2\nrefresh 1\nrefresh 1\ncommit 1\n");
    page_[1].commits = false;
    EXPECT_FALSE(tables.select(0));
    EXPECT_EQ(tables.selected(), 1u) << "with the entry that was refused";
}

TEST(DeviceVersionText, ShowsPrintableTextOnly) {
    const struct {
        char software[17], hardware[17];
        const char* text;
    } cases[] = {
        {"", "", "设备版本: 软件,硬件"},
        {"V2.1\0\x01", "0123456789ABCDEF", "设备版本: 软件V2.1,硬件0123456789ABCDEF"},
        {"V2\x80", "\x1FV1", "设备版本: 软件,硬件"},
    };
    for (const auto& [software, hardware, text] : cases) {
        ParamBlock264 params{};
        std::memcpy(params.softwareVersion.data(), software, 16);
        std::memcpy(params.hardwareVersion.data(), hardware, 16);
        EXPECT_EQ(deviceVersionText(params), text);
    }
}

}  // namespace
}  // namespace korvane
