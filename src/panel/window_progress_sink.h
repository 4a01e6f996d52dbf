#pragma once

#include <windows.h>

#include <mutex>

#include "device/progress_sink.h"

namespace korvane {

// Passes progress on to a window. The worker that reports may outlive the window: after detach()
// nothing is sent any more.
class WindowProgressSink : public ProgressSink {
  public:
    WindowProgressSink(UINT progressMessage, UINT failureMessage)
        : progressMessage_(progressMessage), failureMessage_(failureMessage) {}

    void attach(HWND window);
    void detach() { attach(nullptr); }

    void progress(int percent) override { notify(progressMessage_, percent); }
    void failed(int code) override { notify(failureMessage_, code); }

  private:
    void notify(UINT message, int value);

    UINT progressMessage_;
    UINT failureMessage_;
    std::mutex mutex_;
    HWND window_ = nullptr;
};

}  // namespace korvane
