#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <thread>

#include "device/device_link.h"
#include "device/progress_sink.h"

namespace korvane {

// Counts the steps of one transfer and tells the sink how far it is. The percentage 100 is left to
// the worker: it is the outcome.
class Progress {
  public:
    explicit Progress(ProgressSink& sink) : sink_(sink) {}

    // total > 0. Before it is set no progress is told.
    void setTotal(std::uint32_t total) { total_ = total; }
    // Steps done before anything is told.
    void startAt(std::uint32_t counter) { counter_ = counter; }
    // Adds steps and tells the new percentage: counter x 100 / total, rounded down.
    void add(std::uint32_t steps);

  private:
    ProgressSink& sink_;
    // A firmware file can have more steps than a byte or two would count.
    std::uint32_t counter_ = 0;
    std::uint32_t total_ = 0;
};

// Runs one transfer at a time on a thread of its own and reports its outcome exactly once.
class TransferWorker {
  public:
    // 0, or the code to report.
    using Sequence = std::function<int(Progress&)>;

    explicit TransferWorker(DeviceLink& link) : link_(link) {}
    ~TransferWorker() { join(); }

    // 0, or -1 when a transfer is still running or no thread could be created; then the sink hears
    // nothing.
    int start(std::shared_ptr<ProgressSink> sink, Sequence sequence);

    bool running() const { return running_; }

    // Waits for the thread's end; to have that soon, cancel the link first.
    void join();

  private:
    void run(ProgressSink& sink, const Sequence& sequence);

    DeviceLink& link_;
    std::atomic<bool> running_{false};
    std::thread thread_;
};

}  // namespace korvane
