#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/event_log.h"
#include "simulator/simulated_device.h"

namespace korvane {

// The commands that a running simulator takes line by line.
class Console {
  public:
    // Writes the state to a file, or to the usual one when the path is empty; what to tell.
    using Save = std::function<std::string(const std::string& path)>;

    // All outlive the console.
    Console(SimulatedDevice& device, EventLog& log, Save save)
        : device_(device), log_(log), save_(std::move(save)) {}

    // What to tell, without a line's end; empty for an empty line.
    std::string execute(std::string_view line, std::uint64_t nowMs);

    bool quitAsked() const { return quit_; }

  private:
    struct Row;
    static std::span<const Row> rows();

    std::string help(std::string_view argument);
    std::string fault(std::string_view argument);
    std::string faults(std::string_view argument);
    std::string clear(std::string_view argument);
    std::string status(std::string_view argument);
    std::string alarms(std::string_view argument);
    std::string save(std::string_view argument);
    std::string reboot(std::string_view argument);
    std::string log(std::string_view argument);
    std::string quit(std::string_view argument);

    SimulatedDevice& device_;
    EventLog& log_;
    Save save_;
    std::uint64_t nowMs_ = 0;
    bool quit_ = false;
};

}  // namespace korvane
