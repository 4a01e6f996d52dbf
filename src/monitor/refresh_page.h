#pragma once

#include "device/status_source.h"
#include "monitor/timed_page.h"

namespace korvane {

// A page with one control that shows the latest status and a button below it that stops and starts
// the refreshing.
class RefreshPage : public TimedPage {
  public:
    // `source` outlives the page; `contentId` is the control.
    RefreshPage(const MonitorView& view, int contentId, const StatusSource& source)
        : TimedPage(view), contentId_(contentId), source_(source) {}

  protected:
    virtual void redraw(const DeviceStatusImage& status) = 0;

    // While there is no valid status the last one stays.
    void tick() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onSize(int width, int height) override;

  private:
    void toggleRefreshing();

    int contentId_;
    const StatusSource& source_;
    bool refreshing_ = true;
};

}  // namespace korvane
