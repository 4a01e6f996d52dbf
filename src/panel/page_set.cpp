#include "panel/page_set.h"

#include "editors/ca_page.h"
#include "editors/input_channel_page.h"
#include "monitor/monitor_panel.h"
#include "resources/ids.h"

namespace korvane {

// Two tables each share a dialog: the continuous services' and the short-time services' are alike.
PageSet makePages(const PageSurroundings& surroundings) {
    const auto& [editing, status, reveal] = surroundings;
    PageSet pages{std::make_unique<InputChannelPage>(editing),
                  std::make_unique<MonitorPanel>(status),
                  std::make_unique<Page>(IDD_SYSTEM_PAGE),
                  {}};
    pages.tables.push_back(std::make_unique<Page>(IDD_NETWORK_PAGE));
    pages.tables.push_back(std::make_unique<Page>(IDD_FRAME_LIST_PAGE));
    pages.tables.push_back(std::make_unique<Page>(IDD_SERVICE_FREQUENCY_PAGE));
    pages.tables.push_back(std::make_unique<Page>(IDD_FRAME_LIST_PAGE));
    pages.tables.push_back(std::make_unique<Page>(IDD_SERVICE_FREQUENCY_PAGE));
    pages.tables.push_back(std::make_unique<CaPage>(editing, reveal));
    return pages;
}

}  // namespace korvane
