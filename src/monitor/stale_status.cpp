#include "monitor/stale_status.h"

namespace korvane {

std::string StaleStatus::line(std::uint32_t ageMs, std::time_t now) {
    if (ageMs <= freshMs) {
        since_.reset();
        return {};
    }
    if (!since_) since_ = now - static_cast<std::time_t>(ageMs / 1000);
    char time[16] = {};
    const std::tm* const parts = std::localtime(&*since_);
    if (parts) std::strftime(time, sizeof time, "%H:%M:%S", parts);
    return "状态自 " + std::string(time) + " 起未更新";
}

}  // namespace korvane
