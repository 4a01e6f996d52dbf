#include "panel/panel_commands.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "device/device_client.h"
#include "log/log.h"
#include "model/channel_text.h"

namespace korvane {
namespace {

constexpr std::string_view fileFilter = "korvane Files (*.dat)|*.dat|All Files (*.*)|*.*||";

// What is said before the time when a setting is too recent.
constexpr std::string_view tooSoonToSet = "两次设置时间不能小于";
constexpr std::string_view tooSoonToLoad = "距离上次设置时间不能小于";

std::string printableText(const std::array<char, 16>& field) {
    const auto end = std::find(field.begin(), field.end(), '\0');
    const bool printable =
        std::all_of(field.begin(), end, [](char c) { return c >= ' ' && c <= '~'; });
    return printable ? std::string(field.begin(), end) : std::string();
}

void logFile(const char* what, const std::filesystem::path& path, int result) {
    const std::u8string name = path.u8string();
    logLine(result == 0 ? logInformation : logError, "%s配置文件 %s, 结果%d", what,
            reinterpret_cast<const char*>(name.c_str()), result);
}

// As many as fit a box that fits the screen.
std::string leftOutText(const ChannelsLeftOut& channels) {
    constexpr std::size_t most = 20;
    std::string text =
        "文件中的输入通道超过" + std::to_string(limits::inputChannels) + "个，以下通道未导入:";
    for (std::size_t i = 0; i < std::min(most, channels.size()); ++i)
        text += '\n' + channelName(channels[i]);
    if (channels.size() > most) text += "\n等" + std::to_string(channels.size()) + "个";
    return text;
}

}  // namespace

// A difference of ticks is right even when the clock wraps between the two.
bool PanelCommands::settledSinceLastSetting(std::string_view refusal) {
    if (manager_.link().ticks() - lastSettingMs_ >= settlingMs) return true;
    prompts_.warning(std::string(refusal) + std::to_string(settlingSeconds) + "秒");
    return false;
}

void PanelCommands::save() {
    defaultsRestored_ = false;
    if (!settledSinceLastSetting(tooSoonToSet)) return;
    if (!prompts_.confirm("确认要将配置保存到设备?")) return;
    if (!pages_.commit() || pages_.check() != 0) return;
    const int result =
        transfers_.run([this](auto sink) { return manager_.startDownload(std::move(sink)); });
    if (result != 0) return prompts_.warning(transferFailureText(result));
    lastSettingMs_ = manager_.link().ticks();
}

void PanelCommands::load() {
    defaultsRestored_ = false;
    if (!settledSinceLastSetting(tooSoonToLoad)) return;
    if (!prompts_.confirm("确认要重新从设备获取配置吗?")) return;
    const int result =
        transfers_.run([this](auto sink) { return manager_.startUpload(std::move(sink)); });
    if (result != 0) return prompts_.warning(transferFailureText(result));
    pages_.refresh();
    // The cache only spares a load at the next start: without it nothing is lost.
    if (manager_.model().saveCacheFile() != 0) logLine(logWarning, "配置缓存文件写入失败");
}

void PanelCommands::reboot() {
    defaultsRestored_ = false;
    if (!prompts_.confirm("确认要重启设备吗?")) return;
    const int result = prompts_.whileBusy([this] { return manager_.client().RebootDevice(); });
    if (result != 0) return reportCommandFailure(result);
    prompts_.message("设备已接收到命令，正在重启中，请稍候!");
}

void PanelCommands::restoreDefaults() {
    if (!settledSinceLastSetting(tooSoonToSet)) return;
    if (!prompts_.confirm("确认要使设备恢复默认值吗?")) return;
    manager_.work().backUp(manager_.link().ticks());
    const int result = prompts_.whileBusy([this] { return manager_.client().RestoreDefaults(); });
    if (result != 0) return reportCommandFailure(result);
    prompts_.message("设备已接收到命令，正在生效，请稍候刷新!");
    lastSettingMs_ = manager_.link().ticks();
    defaultsRestored_ = true;
}

// The default extension is not the filter's, so that an export typed without one is told apart
// from the files that the panel keeps for itself.
void PanelCommands::exportFile() {
    defaultsRestored_ = false;
    if (!pages_.commitChanges()) return;
    const auto path = prompts_.chooseFileToSave({"ipr", fileFilter});
    if (!path) return;
    const int result = manager_.model().saveConfigFile(*path);
    logFile("导出", *path, result);
    if (result != 0) return prompts_.warning("导出配置出错");
    prompts_.message("导出配置成功");
}

void PanelCommands::importFile() {
    const auto folder = std::exchange(defaultsRestored_, false) ? manager_.work().backupFolder()
                                                                : std::filesystem::path();
    const auto path = prompts_.chooseFileToOpen({"dat", fileFilter, folder});
    if (!path) return;
    const bool withDeviceParams =
        prompts_.confirm("导入业务配置的同时，导入网络配置吗", Prompts::DefaultButton::No);
    ChannelsLeftOut leftOut;
    const int result = importInto(*path, withDeviceParams, leftOut);
    logFile("导入", *path, result);
    if (result != 0) return prompts_.warning("导入配置出错");
    pages_.refresh();
    prompts_.message("导入配置成功");
    if (!leftOut.empty()) prompts_.warning(leftOutText(leftOut));
}

// A file can fail after its channels have been taken. To the operator an import that failed changed
// nothing, so they are put back.
int PanelCommands::importInto(const std::filesystem::path& path, bool withDeviceParams,
                              ChannelsLeftOut& leftOut) {
    ConfigModel& model = manager_.model();
    const FlatChannelList channels = model.flatChannels();
    const int result = model.loadConfigFile(path, withDeviceParams, leftOut);
    if (result != 0) model.setFlatChannels(channels);
    return result;
}

void PanelCommands::reportCommandFailure(int result) {
    prompts_.warning(result == link_result::unreachable ? "连接设备失败，请检查网络连接"
                                                        : "与设备通信出错");
}

void PanelCommands::recoverWork() {
    manager_.work().recover(manager_.link().ticks());
    pages_.refresh();
}

void PanelCommands::discardWork() {
    manager_.work().discard(manager_.link().ticks());
}

std::string deviceVersionText(const ParamBlock264& params) {
    return "设备版本: 软件" + printableText(params.softwareVersion) + ",硬件" +
           printableText(params.hardwareVersion);
}

}  // namespace korvane
