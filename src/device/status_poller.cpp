#include "device/status_poller.h"

#include <system_error>

namespace korvane {

StatusPoller::StatusPoller(DeviceClient& client, DeviceLink& link, StatusCache& cache)
    : client_(client), link_(link), cache_(cache), image_(std::make_unique<DeviceStatusImage>()) {}

int StatusPoller::start() {
    stopFlag_ = false;
    ended_ = false;
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error&) {
        ended_ = true;
        return -1;
    }
    return 0;
}

void StatusPoller::join() {
    if (thread_.joinable()) thread_.join();
}

void StatusPoller::endByForce(Force force) {
    force(thread_);
    ended_ = true;
}

void StatusPoller::run() {
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

void StatusPoller::pollOnce() {
    constexpr std::uint8_t wholeSummary = 2;
    std::uint16_t heartbeat = 0;
    StatusSummary summary{};
    if (client_.GetHeartbeat(heartbeat) != 0 || stopFlag_ ||
        client_.GetStatusSummary(wholeSummary, summary) != 0) {
        cache_.invalidateImage();
        return;
    }
    fromNetworkOrder(summary);
    cache_.storeSummary(summary);

    if (stopFlag_ || client_.GetDeviceStatus(*image_) != 0) {
        cache_.invalidateImage();
        return;
    }
    fromNetworkOrder(*image_);
    cache_.storeImage(*image_);
}

}  // namespace korvane
