#pragma once

#include <condition_variable>
#include <mutex>
#include <vector>

#include "device/progress_sink.h"

namespace korvane::test {

// Notes what a transfer tells, for a test to look at and to wait for.
class RecordingSink : public ProgressSink {
  public:
    void progress(int percent) override { note(percentages_, percent); }
    void failed(int code) override { note(failures_, code); }

    // Waits for the outcome: 0, or the code of the failure.
    int outcome() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return outcomesHeld() > 0; });
        return failures_.empty() ? 0 : failures_.front();
    }
    // How many outcomes were told: a transfer owes one.
    int outcomes() {
        const std::lock_guard lock(mutex_);
        return outcomesHeld();
    }
    std::vector<int> percentages() {
        const std::lock_guard lock(mutex_);
        return percentages_;
    }

  private:
    void note(std::vector<int>& list, int value) {
        const std::lock_guard lock(mutex_);
        list.push_back(value);
        changed_.notify_all();
    }
    int outcomesHeld() const {
        const bool complete = !percentages_.empty() && percentages_.back() == 100;
        return static_cast<int>(failures_.size()) + (complete ? 1 : 0);
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<int> percentages_, failures_;
};

}  // namespace korvane::test
