#include "admin/firmware_upgrade.h"

#include "device/firmware_file.h"

namespace korvane {

bool FirmwareUpgrade::browse() {
    const auto chosen = prompts_.chooseFileToOpen(
        {"out", "korvane prog Files (*.out)|*.out|All Files (*.*)|*.*||"});
    if (!chosen) return false;
    if (!isFirmwareName(fileNameOf(*chosen))) {
        prompts_.warning("文件名不正确，请检查是否为复用器的升级文件");
        return false;
    }
    file_ = *chosen;
    return true;
}

// A file that was never chosen cannot be opened, which is what the operator is told.
void FirmwareUpgrade::run() {
    if (!prompts_.confirm("确认要进行设备升级吗？", Prompts::DefaultButton::No)) return;
    const int result =
        transfers_.run([this](auto sink) { return manager_.startUpgrade(std::move(sink), file_); });
    if (result == 0) return prompts_.message("升级完成，请重启设备");
    prompts_.warning(transferFailureText(result));
}

}  // namespace korvane
