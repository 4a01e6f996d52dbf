#pragma once

#include "device/status_source.h"
#include "monitor/timed_page.h"

namespace korvane {

// The chart of how full the time slots are. Without a valid status it is empty.
class GraphicMonitorPage : public TimedPage {
  public:
    // `source` outlives the page.
    explicit GraphicMonitorPage(const StatusSource& source);

  protected:
    bool onInit() override;
    void tick() override;
    void onSize(int width, int height) override;

  private:
    void redraw(const DeviceStatusImage& status);

    const StatusSource& source_;
};

}  // namespace korvane
