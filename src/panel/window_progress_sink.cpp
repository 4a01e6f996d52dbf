#include "panel/window_progress_sink.h"

namespace korvane {

void WindowProgressSink::attach(HWND window) {
    const std::lock_guard lock(mutex_);
    window_ = window;
}

// Sent rather than posted: the messages' numbers lie among those of dynamic data exchange, which
// are not always let through a queue. The call returns at once and keeps the order. A system that
// refuses even that must not leave the operator before a dialog without a way out.
void WindowProgressSink::notify(UINT message, int value) {
    const std::lock_guard lock(mutex_);
    const auto sent = [&](UINT number) {
        return send_(window_, number, static_cast<WPARAM>(value), 0) != FALSE;
    };
    if (window_ && !sent(message)) sent(standIn(message));
}

}  // namespace korvane
