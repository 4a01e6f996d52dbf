#include "admin/device_settings.h"

namespace korvane {

void DeviceSettings::apply() {
    if (!prompts_.confirm("确认要修改网络设置吗?")) return;
    if (form_.gather() != SystemForm::gathered) return;
    if (prompts_.whileBusy([this] { return send(); }) != 0)
        return prompts_.warning("与设备通道错误!");
    if (prompts_.confirm("网络设置修改成功，是否重启设备?")) reboot();
}

int DeviceSettings::send() {
    DeviceClient& client = manager_.client();
    int result = client.SetDeviceParams(manager_.model().deviceParams());
    if (result == 0) result = client.ApplyDeviceParams();
    if (result == 0) manager_.work().sentDeviceParams();
    return result;
}

void DeviceSettings::reboot() {
    const int result = prompts_.whileBusy([this] { return manager_.client().RebootDevice(); });
    if (result != 0) return prompts_.warning("与设备通信出错，重启设备失败!");
    prompts_.message("设备已收到命令，正在重启中，请稍候!");
}

}  // namespace korvane
