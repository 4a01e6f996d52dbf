#include "monitor/service_list_page.h"

#include "monitor/service_rows.h"
#include "monitor/views.h"
#include "ui/copy_keys.h"

namespace korvane {
namespace {

constexpr std::array<ListView::Column, 9> columns = {{
    {"序号", 40},
    {"业务标识", 60},
    {"子帧长度", 70},
    {"视频码率", 70},
    {"视频包计数", 80},
    {"音频码率", 70},
    {"音频包计数", 80},
    {"数据码率", 70},
    {"数据包计数", 80},
}};

}  // namespace

ServiceListPage::ServiceListPage(const StatusSource& source)
    : RefreshPage(servicesView, IDC_SERVICES, source) {}

bool ServiceListPage::onInit() {
    control<ListView>(IDC_SERVICES).setUp(columns);
    startTimer();
    return true;
}

std::optional<LRESULT> ServiceListPage::onNotify(const NMHDR& header) {
    if (header.idFrom != IDC_SERVICES || header.code != LVN_KEYDOWN) return std::nullopt;
    const WORD key = reinterpret_cast<const NMLVKEYDOWN&>(header).wVKey;
    return selectOrCopyRows(control<ListView>(IDC_SERVICES), key);
}

void ServiceListPage::redraw(const DeviceStatusImage& status) {
    control<ListView>(IDC_SERVICES).setRows(serviceRows(status));
}

}  // namespace korvane
