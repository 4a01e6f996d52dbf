#pragma once

#include <windows.h>

#include <mutex>

#include "device/progress_sink.h"

namespace korvane {

// Passes progress on to a window. The worker that reports may outlive the window: after detach()
// nothing is sent any more.
class WindowProgressSink : public ProgressSink {
  public:
    using Send = BOOL(WINAPI*)(HWND, UINT, WPARAM, LPARAM);

    // `send` stands for SendNotifyMessageW.
    WindowProgressSink(UINT progressMessage, UINT failureMessage, Send send)
        : progressMessage_(progressMessage), failureMessage_(failureMessage), send_(send) {}

    // The message of the window's own range that stands in for one that the system refuses.
    static constexpr UINT standIn(UINT message) { return WM_APP + message; }

    void attach(HWND window);
    void detach() { attach(nullptr); }

    void progress(int percent) override { notify(progressMessage_, percent); }
    void failed(int code) override { notify(failureMessage_, code); }

  private:
    void notify(UINT message, int value);

    UINT progressMessage_;
    UINT failureMessage_;
    Send send_;
    std::mutex mutex_;
    HWND window_ = nullptr;
};

}  // namespace korvane
