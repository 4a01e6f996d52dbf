#include "device/status_poller.h"

#include <climits>

#include "log/log.h"

namespace korvane {
namespace {

constexpr int faulted = INT_MIN;  // result of a poll that did not come to its end

}  // namespace

StatusPoller::StatusPoller(DeviceClient& client, DeviceLink& link, StatusCache& cache,
                           Threads& threads)
    : client_(client),
      link_(link),
      cache_(cache),
      threads_(threads),
      image_(std::make_unique<DeviceStatusImage>()) {}

int StatusPoller::start() {
    stopFlag_ = false;
    ended_ = false;
    lastResult_.reset();
    try {
        thread_ = threads_.start("status poller", [this] { run(); });
    } catch (const std::exception& failure) {
        logLine(logError, "状态轮询线程启动失败: %s", failure.what());
        ended_ = true;
        return -1;
    }
    return 0;
}

bool StatusPoller::endByForce() {
    if (!client_.heldBy(id_) || !thread_->endByForce()) return false;
    client_.takeFrom(id_);
    ended_ = true;
    return true;
}

void StatusPoller::run() {
    id_ = std::this_thread::get_id();
    while (!stopFlag_) {
        pollOnce();
        if (!sleepBetweenPolls()) break;
    }
    ended_ = true;
}

// 2,000 ms in steps after which the stop flag counts. False when it is set.
bool StatusPoller::sleepBetweenPolls() {
    constexpr int steps = 20;
    constexpr std::uint32_t stepMs = 100;
    for (int i = 0; i < steps && !stopFlag_; ++i) link_.sleep(stepMs);
    return !stopFlag_;
}

int StatusPoller::pollOnce() {
    const int result = guardedPoll();
    if (result != 0) cache_.invalidateImage();
    if (!stopFlag_) note(result);
    return result;
}

// What faults once is likely to do so at each poll: of a row of them the first one is logged.
int StatusPoller::guardedPoll() {
    int result = faulted;
    try {
        threads_.guarded([&] { result = poll(); });
    } catch (const std::exception& fault) {
        client_.abandonExchange();
        if (lastResult_ != faulted) logLine(logError, "状态轮询异常: %s", fault.what());
    }
    return result;
}

int StatusPoller::poll() {
    constexpr std::uint8_t wholeSummary = 2;
    constexpr int stopped = link_result::noAnswer;
    std::uint16_t heartbeat = 0;
    StatusSummary summary{};
    int result = client_.GetHeartbeat(heartbeat);
    if (result == 0) result = stopFlag_ ? stopped : client_.GetStatusSummary(wholeSummary, summary);
    if (result != 0) return result;
    fromNetworkOrder(summary);
    cache_.storeSummary(summary);

    result = stopFlag_ ? stopped : client_.GetDeviceStatus(*image_);
    if (result != 0) return result;
    fromNetworkOrder(*image_);
    cache_.storeImage(*image_, link_.ticks());
    return 0;
}

// A line when the link is lost or found, none a poll.
void StatusPoller::note(int result) {
    const bool first = !lastResult_, found = result == 0;
    const bool changed = first || found != (lastResult_ == 0);
    lastResult_ = result;
    if (!changed) return;
    if (found && first) return logLine(logInformation, "设备连接正常");
    if (found) return logLine(logWarning, "设备连接恢复");
    logLine(logWarning, "设备连接中断, 结果%d", result);
}

}  // namespace korvane
