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
    const int result = client_.SetDeviceParams(model_.deviceParams());
    return result != 0 ? result : client_.ApplyDeviceParams();
}

void DeviceSettings::reboot() {
    const int result = prompts_.whileBusy([this] { return client_.RebootDevice(); });
    if (result != 0) return prompts_.warning("与设备通信出错，重启设备失败!");
    prompts_.message("设备已收到命令，正在重启中，请稍候!");
}

}  // namespace korvane
