#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "device/device_client.h"
#include "device/device_link.h"
#include "device/progress_sink.h"
#include "device/threads.h"

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
    // Names what is done from now on, for the log: a text that stays.
    void at(std::string_view step);
    std::string_view step() const { return step_; }
    // Adds steps and tells the new percentage: counter x 100 / total, rounded down.
    void add(std::uint32_t steps);

  private:
    ProgressSink& sink_;
    std::string_view step_;
    // A firmware file can have more steps than a byte or two would count.
    std::uint32_t counter_ = 0;
    std::uint32_t total_ = 0;
};

// Runs one transfer at a time on a thread of its own and reports its outcome exactly once.
class TransferWorker {
  public:
    // 0, or the code to report. What it throws is a failure.
    using Sequence = std::function<int(Progress&)>;

    TransferWorker(DeviceClient& client, DeviceLink& link, Threads& threads)
        : client_(client), link_(link), threads_(threads) {}

    // `name` is for the log, and stays. 0, or -1 when a transfer is still running or no thread
    // could be created; then the sink hears nothing.
    int start(const char* name, std::shared_ptr<ProgressSink> sink, Sequence sequence);

    bool running() const { return running_; }

    // Waits for the thread's end; to have that soon, cancel the link first.
    void join() { thread_.reset(); }

  private:
    void run(const char* name, ProgressSink& sink, const Sequence& sequence);
    int outcome(const char* name, const Sequence& sequence, Progress& progress);

    DeviceClient& client_;
    DeviceLink& link_;
    Threads& threads_;
    std::atomic<bool> running_{false};
    std::unique_ptr<RunningThread> thread_;
};

}  // namespace korvane
