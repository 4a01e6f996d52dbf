#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "simulator/event_log.h"
#include "simulator/fault_plan.h"
#include "simulator/simulated_device.h"

namespace korvane {

struct SimulatorOptions {
    std::string address = "127.0.0.1";
    std::uint16_t port = 1123;
    std::filesystem::path stateFile;  // empty: nothing is kept
    std::filesystem::path dumpFile;   // empty: none
    SimulationSettings simulation;
    std::vector<Fault> faults;
    LogLevel logLevel = LogLevel::Normal;
    bool help = false;
    bool version = false;
};

// The arguments without the program's name. Nothing, and why in `error`, when one is wrong.
std::optional<SimulatorOptions> parseOptions(std::span<const char* const> arguments,
                                             std::string& error);

// What --help prints.
std::string helpText();

// The fault syntax and kinds, for --help and for the console.
std::string faultHelp();

}  // namespace korvane
