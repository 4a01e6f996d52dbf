#include "monitor/graphic_monitor_page.h"

#include <algorithm>

#include "monitor/slot_occupancy.h"
#include "monitor/views.h"
#include "ui/bar_chart.h"

namespace korvane {
GraphicMonitorPage::GraphicMonitorPage(const StatusSource& source)
    : TimedPage(graphicView), source_(source) {
    BarChart::registerClass();
}

bool GraphicMonitorPage::onInit() {
    control<BarChart>(IDC_BAR_CHART).setAxisTitles("信道带宽占用比%", "复用帧占用的时隙");
    redraw(DeviceStatusImage{});
    return true;
}

void GraphicMonitorPage::tick() {
    DeviceStatusImage status{};
    source_.getDeviceStatusImage(status);
    redraw(status);
}

void GraphicMonitorPage::redraw(const DeviceStatusImage& status) {
    const auto percentages = slotOccupancy(status);
    std::array<double, percentages.size()> bars;
    std::ranges::transform(percentages, bars.begin(),
                           [](std::uint64_t value) { return static_cast<double>(value); });
    control<BarChart>(IDC_BAR_CHART).setValues(bars);
}

// The chart keeps its distance from the frame around it.
void GraphicMonitorPage::onSize(int width, int height) {
    const auto frame = control<Static>(IDC_CHART_FRAME);
    const auto chart = control<BarChart>(IDC_BAR_CHART);
    RECT frameArea = frame.area(), chartArea = chart.area();
    const LONG right = width - frameArea.left, bottom = height - frameArea.left;
    chartArea.right += right - frameArea.right;
    chartArea.bottom += bottom - frameArea.bottom;
    frameArea.right = right;
    frameArea.bottom = bottom;
    frame.place(frameArea);
    chart.place(chartArea);
}

}  // namespace korvane
