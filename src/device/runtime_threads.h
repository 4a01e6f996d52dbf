#pragma once

#include "device/threads.h"

namespace korvane {

// The runtime's threads: faults in them are exceptions, and they can be ended by force. What
// escapes a thread's work goes to the log.
Threads& runtimeThreads();

}  // namespace korvane
