#include "panel/page_set.h"

#include "admin/system_page.h"
#include "editors/ca_page.h"
#include "editors/frame_list_page.h"
#include "editors/input_channel_page.h"
#include "editors/network_page.h"
#include "editors/service_frequency_page.h"
#include "monitor/monitor_panel.h"

namespace korvane {

// Two tables each share a dialog: the continuous services' and the short-time services' are alike.
PageSet makePages(const PageSurroundings& surroundings) {
    const auto& [manager, prompts, forms, transfers, reveal, revealSystem] = surroundings;
    const Editing editing{manager.model(), prompts, forms};
    PageSet pages{std::make_unique<InputChannelPage>(editing),
                  std::make_unique<MonitorPanel>(manager),
                  std::make_unique<SystemPage>(manager, prompts, transfers, revealSystem),
                  {}};
    pages.tables.push_back(std::make_unique<NetworkPage>(editing, reveal));
    pages.tables.push_back(std::make_unique<FrameListPage>(editing, TableKind::Continuous));
    pages.tables.push_back(
        std::make_unique<ServiceFrequencyPage>(editing, reveal, TableKind::Continuous));
    pages.tables.push_back(std::make_unique<FrameListPage>(editing, TableKind::ShortTime));
    pages.tables.push_back(
        std::make_unique<ServiceFrequencyPage>(editing, reveal, TableKind::ShortTime));
    pages.tables.push_back(std::make_unique<CaPage>(editing, reveal));
    return pages;
}

}  // namespace korvane
