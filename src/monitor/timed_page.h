#pragma once

#include "monitor/views.h"
#include "ui/page.h"

namespace korvane {

// A page that renews itself at regular times, shown or hidden, by the timer 1 of its window.
class TimedPage : public Page {
  public:
    TimedPage(int resourceId, UINT periodMs) : Page(resourceId), periodMs_(periodMs) {}
    explicit TimedPage(const MonitorView& view) : TimedPage(view.dialog, view.periodMs) {}

    void startTimer() { SetTimer(hwnd(), timerId, periodMs_, nullptr); }
    void stopTimer() { KillTimer(hwnd(), timerId); }

  protected:
    virtual void tick() = 0;

    void onTimer(UINT_PTR timer) override;
    void onDestroy() override { stopTimer(); }

  private:
    static constexpr UINT_PTR timerId = 1;

    UINT periodMs_;
};

}  // namespace korvane
