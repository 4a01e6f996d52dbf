#include "monitor/service_list_page.h"

#include "monitor/service_rows.h"
#include "monitor/views.h"
#include "ui/list_view.h"

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
    auto scaledColumns = columns;
    for (ListView::Column& column : scaledColumns) column.width = scaled(column.width);
    control<ListView>(IDC_SERVICES).setUp(scaledColumns);
    startTimer();
    return true;
}

void ServiceListPage::redraw(const DeviceStatusImage& status) {
    control<ListView>(IDC_SERVICES).setRows(serviceRows(status));
}

}  // namespace korvane
