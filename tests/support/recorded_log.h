#pragma once

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

#include "log/log.h"

namespace korvane::test {

// Keeps the log's lines, level first ("1 text"), while it lives.
class RecordedLog : public LogSink {
  public:
    RecordedLog() : before_(setLogSink(this)) {}
    ~RecordedLog() override { setLogSink(before_); }
    RecordedLog(const RecordedLog&) = delete;
    RecordedLog& operator=(const RecordedLog&) = delete;

    void print(int level, std::string_view line) noexcept override {
        const std::lock_guard lock(mutex_);
        lines_.push_back(std::to_string(level) + ' ' + std::string(line));
    }

    std::vector<std::string> lines() const {
        const std::lock_guard lock(mutex_);
        return lines_;
    }
    // How many lines hold the text.
    int count(std::string_view text) const {
        return static_cast<int>(std::ranges::count_if(lines(), [text](const std::string& line) {
            return line.find(text) != std::string::npos;
        }));
    }

  private:
    LogSink* const before_;
    mutable std::mutex mutex_;
    std::vector<std::string> lines_;
};

}  // namespace korvane::test
