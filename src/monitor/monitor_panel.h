#pragma once

#include <array>

#include "monitor/frame_structure_page.h"
#include "monitor/graphic_monitor_page.h"
#include "monitor/indicators.h"
#include "monitor/service_list_page.h"
#include "monitor/stale_status.h"
#include "ui/bitmap.h"
#include "ui/controls.h"
#include "ui/page_stack.h"

namespace korvane {

// The panel's page with the live status: lamps, time of day, and tabs with the three views. All
// timers run from the start, whatever is shown.
class MonitorPanel : public TimedPage {
  public:
    // `source` outlives the panel.
    explicit MonitorPanel(const StatusSource& source);

  protected:
    bool onInit() override;
    std::optional<LRESULT> onNotify(const NMHDR& header) override;
    void tick() override;
    void onSize(int width, int height) override;
    void onDestroy() override;

  private:
    std::array<TimedPage*, 3> pages() { return {&structure_, &services_, &graphic_}; }
    void loadLamps();
    void replaceLamp(int id, int size);
    void createPages();
    void placePages();
    void startAll();
    void stopAll();
    void light(int id, Lamp lamp);
    Bitmap& picture(Lamp lamp) { return pictures_[static_cast<std::size_t>(lamp)]; }

    const StatusSource& source_;
    FrameStructurePage structure_;
    ServiceListPage services_;
    GraphicMonitorPage graphic_;
    PageStack stack_;
    StaleStatus stale_;
    std::array<Bitmap, lampPictures.size()> pictures_;
};

}  // namespace korvane
