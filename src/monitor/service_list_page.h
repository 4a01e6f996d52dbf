#pragma once

#include "monitor/refresh_page.h"

namespace korvane {

// One row for each service that the multiplex carries. A row that the operator selected stays
// selected while it is there, as in every list of the panel.
class ServiceListPage : public RefreshPage {
  public:
    explicit ServiceListPage(const StatusSource& source);

  protected:
    bool onInit() override;
    std::optional<LRESULT> onNotify(const NMHDR& header) override;
    void redraw(const DeviceStatusImage& status) override;
};

}  // namespace korvane
