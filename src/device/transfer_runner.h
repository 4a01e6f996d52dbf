#pragma once

#include <functional>
#include <memory>

#include "device/progress_sink.h"

namespace korvane {

// The seam between a command and the window behind which its transfer runs: the operator waits and
// can do nothing else.
class TransferRunner {
  public:
    // One of the manager's start operations: 0, or -1 when nothing was started.
    using Start = std::function<int(std::shared_ptr<ProgressSink>)>;

    virtual ~TransferRunner() = default;

    // Starts it once its progress can be shown, and waits. 0, or the code of the failure.
    virtual int run(const Start& start) = 0;
};

}  // namespace korvane
