#pragma once

#include <atomic>
#include <memory>
#include <optional>
#include <thread>

#include "device/device_client.h"
#include "device/status_cache.h"
#include "device/threads.h"

namespace korvane {

// Asks the device for its status about every two seconds, on a thread of its own, and keeps the
// answers in the cache. The thread holds no lock while it sleeps.
class StatusPoller {
  public:
    StatusPoller(DeviceClient& client, DeviceLink& link, StatusCache& cache, Threads& threads);

    // 0, or -1 when the thread could not be created.
    int start();

    // Asks the thread to end; it looks between its commands and every 100 ms of its sleep.
    void requestStop() { stopFlag_ = true; }
    bool stopRequested() const { return stopFlag_; }
    bool ended() const { return ended_; }
    // Waits for the thread's end, which must have been asked for.
    void join() { thread_.reset(); }

    // For a thread that hangs in the system and has the link: ends it, and its hold on the link.
    // One that does not have the link waits for nothing but that, and is left to end by itself.
    // False when nothing was ended.
    bool endByForce();

    // One poll: heartbeat, summary, status image. Stops at the first command that fails, with its
    // result.
    int pollOnce();

  private:
    void run();
    bool sleepBetweenPolls();
    int guardedPoll();
    int poll();
    void note(int result);

    DeviceClient& client_;
    DeviceLink& link_;
    StatusCache& cache_;
    Threads& threads_;
    std::unique_ptr<DeviceStatusImage> image_;  // 48 KB that a poller's stack need not carry
    std::atomic<bool> stopFlag_{false};
    std::atomic<bool> ended_{true};
    std::atomic<std::thread::id> id_;
    std::optional<int> lastResult_;          // of a poll since start
    std::unique_ptr<RunningThread> thread_;  // the last member: it uses the others
};

}  // namespace korvane
