#pragma once

#include "monitor/refresh_page.h"

namespace korvane {

// The tree of multiplex frames, sub-frames and input segments. It is made anew on each tick, fully
// expanded and from its top.
class FrameStructurePage : public RefreshPage {
  public:
    explicit FrameStructurePage(const StatusSource& source);

  protected:
    bool onInit() override;
    std::optional<LRESULT> onNotify(const NMHDR& header) override;
    void redraw(const DeviceStatusImage& status) override;
};

}  // namespace korvane
