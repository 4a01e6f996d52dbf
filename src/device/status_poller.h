#pragma once

#include <atomic>
#include <memory>
#include <thread>

#include "device/device_client.h"
#include "device/status_cache.h"

namespace korvane {

// Asks the device for its status about every two seconds, on a thread of its own, and keeps the
// answers in the cache. The thread holds no lock while it sleeps.
class StatusPoller {
  public:
    StatusPoller(DeviceClient& client, DeviceLink& link, StatusCache& cache);
    ~StatusPoller() { join(); }

    // 0, or -1 when the thread could not be created.
    int start();

    // Asks the thread to end; it looks between its commands and every 100 ms of its sleep.
    void requestStop() { stopFlag_ = true; }
    bool stopRequested() const { return stopFlag_; }
    bool ended() const { return ended_; }
    // Waits for the thread's end, which must have been asked for.
    void join();

    // The system's way to end a thread wherever it is; it leaves the thread object not joinable.
    using Force = void (*)(std::thread&);
    // For a thread that does not go. What it held stays held for ever.
    void endByForce(Force force);

    // One poll: heartbeat, summary, status image. Stops at the first command that fails.
    void pollOnce();

  private:
    void run();
    bool sleepBetweenPolls();

    DeviceClient& client_;
    DeviceLink& link_;
    StatusCache& cache_;
    std::unique_ptr<DeviceStatusImage> image_;  // 48 KB that a poller's stack need not carry
    std::atomic<bool> stopFlag_{false};
    std::atomic<bool> ended_{true};
    std::thread thread_;
};

}  // namespace korvane
