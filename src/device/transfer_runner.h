#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "device/device_client.h"
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

// What the operator is told of a transfer that failed.
inline std::string_view transferFailureText(int result) {
    return result == link_result::unreachable ? "连接设备失败,请检查网络连接"
                                              : "与设备通信错误，请重试";
}

}  // namespace korvane
