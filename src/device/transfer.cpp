#include "device/transfer.h"

#include <exception>

#include "device/device_client.h"

namespace korvane {

void Progress::add(std::uint32_t steps) {
    counter_ += steps;
    if (total_ == 0) return;
    const auto percent = static_cast<int>(std::uint64_t{counter_} * 100 / total_);
    if (percent < 100) sink_.progress(percent);
}

int TransferWorker::start(std::shared_ptr<ProgressSink> sink, Sequence sequence) {
    if (running_) return -1;
    join();
    running_ = true;
    try {
        thread_ = std::thread([this, sink = std::move(sink), sequence = std::move(sequence)] {
            run(*sink, sequence);
        });
    } catch (const std::exception&) {
        running_ = false;
        return -1;
    }
    return 0;
}

void TransferWorker::join() {
    if (thread_.joinable()) thread_.join();
}

void TransferWorker::run(ProgressSink& sink, const Sequence& sequence) {
    constexpr std::uint32_t startDelayMs = 1000;  // the operator sees the dialog before it moves
    link_.sleep(startDelayMs);
    int result = link_result::sendFailed;
    try {
        Progress progress(sink);
        result = sequence(progress);
    } catch (const std::exception&) {
        // Out of memory, or a file system that throws: a failed transfer like any other.
    }
    // The next transfer may begin as soon as this one's outcome is known.
    running_ = false;
    if (result == 0)
        sink.progress(100);
    else
        sink.failed(result);
}

}  // namespace korvane
