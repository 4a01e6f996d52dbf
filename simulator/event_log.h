#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "simulator/simulated_device.h"

namespace korvane {

enum class LogLevel {
    Quiet,   // nothing
    Normal,  // all but the status polls
    All,
};

// "quiet", "normal" or "all".
std::optional<LogLevel> parseLogLevel(std::string_view text);

// "127.0.0.1:1123"
std::string endpointText(const Endpoint& endpoint);

// A line for every event that the level lets through: time, peer, what happened.
class EventLog {
  public:
    // The time of day as "hh:mm:ss.mmm".
    using TimeText = std::function<std::string()>;

    EventLog(std::ostream& out, LogLevel level, TimeText time)
        : out_(out), level_(level), time_(std::move(time)) {}

    void write(const DeviceEvent& event);
    void setLevel(LogLevel level) { level_ = level; }

  private:
    std::ostream& out_;
    LogLevel level_;
    TimeText time_;
};

}  // namespace korvane
