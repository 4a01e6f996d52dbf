#pragma once

#include <array>
#include <string_view>

#include "resources/ids.h"

namespace korvane {

// One of the monitor's views: a tab of it, and how often it renews itself.
struct MonitorView {
    std::string_view title;
    int dialog;
    unsigned periodMs;
};

inline constexpr MonitorView structureView = {"复用帧结构", IDD_FRAME_STRUCTURE_PAGE, 1500};
inline constexpr MonitorView servicesView = {"业务列表", IDD_SERVICE_LIST_PAGE, 1000};
inline constexpr MonitorView graphicView = {"图形化监控", IDD_GRAPHIC_MONITOR_PAGE, 1500};

// In the order of the tabs.
inline constexpr std::array monitorViews = {structureView, servicesView, graphicView};

// Of the lamps and the time of day above them.
inline constexpr unsigned monitorPeriodMs = 1000;

}  // namespace korvane
