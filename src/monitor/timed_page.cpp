#include "monitor/timed_page.h"

#include <new>

namespace korvane {

// A message box for each tick would bury the operator: without memory a tick is left out, and the
// next one tries again.
void TimedPage::onTimer(UINT_PTR timer) {
    if (timer != timerId) return;
    try {
        tick();
    } catch (const std::bad_alloc&) {
    }
}

}  // namespace korvane
