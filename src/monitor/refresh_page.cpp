#include "monitor/refresh_page.h"

#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {

void RefreshPage::tick() {
    DeviceStatusImage status;
    if (source_.getDeviceStatusImage(status) == 0) redraw(status);
}

bool RefreshPage::onCommand(int id, int notification, HWND) {
    if (id != IDC_REFRESH_TOGGLE || notification != BN_CLICKED) return false;
    toggleRefreshing();
    return true;
}

void RefreshPage::toggleRefreshing() {
    refreshing_ = !refreshing_;
    control<Button>(IDC_REFRESH_TOGGLE).setText(refreshing_ ? "停止刷新" : "启动刷新");
    if (refreshing_)
        startTimer();
    else
        stopTimer();
}

// The button stays in its corner, the content takes the room above it.
void RefreshPage::onSize(int width, int height) {
    const Control content(GetDlgItem(hwnd(), contentId_));
    const auto button = control<Button>(IDC_REFRESH_TOGGLE);
    RECT contentArea = content.area(), buttonArea = button.area();
    const LONG margin = contentArea.left;
    OffsetRect(&buttonArea, width - margin - buttonArea.right, height - margin - buttonArea.bottom);
    contentArea.right = width - margin;
    contentArea.bottom = buttonArea.top - margin;
    content.place(contentArea);
    button.place(buttonArea);
}

}  // namespace korvane
