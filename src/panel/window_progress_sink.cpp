#include "panel/window_progress_sink.h"

namespace korvane {

void WindowProgressSink::attach(HWND window) {
    const std::lock_guard lock(mutex_);
    window_ = window;
}

// Sent rather than posted: the messages' numbers lie among those of dynamic data exchange, which
// are not always let through a queue. The call returns at once and keeps the order.
void WindowProgressSink::notify(UINT message, int value) {
    const std::lock_guard lock(mutex_);
    if (window_) SendNotifyMessageW(window_, message, static_cast<WPARAM>(value), 0);
}

}  // namespace korvane
