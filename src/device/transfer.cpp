#include "device/transfer.h"

#include <exception>

#include "log/log.h"

namespace korvane {
namespace {

void logOutcome(const char* name, int result, const Progress& progress, std::uint32_t ms) {
    const double seconds = ms / 1000.0;
    if (result == 0)
        logLine(logInformation, "%s: 成功, 用时%.1f秒", name, seconds);
    else
        logLine(logError, "%s: 失败, 结果%d, 停在%.*s, 用时%.1f秒", name, result,
                static_cast<int>(progress.step().size()), progress.step().data(), seconds);
}

}  // namespace

void Progress::at(std::string_view step) {
    step_ = step;
    logLine(logInformation, "  %.*s", static_cast<int>(step.size()), step.data());
}

void Progress::add(std::uint32_t steps) {
    counter_ += steps;
    if (total_ == 0) return;
    const auto percent = static_cast<int>(std::uint64_t{counter_} * 100 / total_);
    if (percent < 100) sink_.progress(percent);
}

int TransferWorker::start(const char* name, std::shared_ptr<ProgressSink> sink, Sequence sequence) {
    if (running_) return -1;
    join();
    running_ = true;
    try {
        thread_ = threads_.start(
            "transfer", [this, name, sink = std::move(sink), sequence = std::move(sequence)] {
                run(name, *sink, sequence);
            });
    } catch (const std::exception& failure) {
        logLine(logError, "%s: 线程启动失败: %s", name, failure.what());
        running_ = false;
        return -1;
    }
    return 0;
}

void TransferWorker::run(const char* name, ProgressSink& sink, const Sequence& sequence) {
    constexpr std::uint32_t startDelayMs = 1000;  // the operator sees the dialog before it moves
    link_.sleep(startDelayMs);
    const std::uint32_t begin = link_.ticks();
    Progress progress(sink);
    logLine(logInformation, "%s: 开始", name);
    const int result = outcome(name, sequence, progress);
    logOutcome(name, result, progress, link_.ticks() - begin);
    // The next transfer may begin as soon as this one's outcome is known.
    running_ = false;
    if (result == 0)
        sink.progress(100);
    else
        sink.failed(result);
}

// Out of memory, a file system that throws, a fault of ours: a failed transfer like any other.
int TransferWorker::outcome(const char* name, const Sequence& sequence, Progress& progress) {
    int result = link_result::sendFailed;
    try {
        threads_.guarded([&] { result = sequence(progress); });
    } catch (const std::exception& fault) {
        client_.abandonExchange();
        logLine(logError, "%s: 异常: %s", name, fault.what());
    }
    return result;
}

}  // namespace korvane
