#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "simulator/simulated_device.h"

namespace korvane {

// Keeps the state file up to date: it is written once the device has been left alone for a moment,
// not at every block of a transfer.
class StateKeeper {
  public:
    // The device outlives the keeper. An empty path keeps nothing.
    StateKeeper(const SimulatedDevice& device, std::filesystem::path path)
        : device_(device), path_(std::move(path)), seen_(device.revision()) {}

    // Saves when it is time to. False, and why in `error`, when that failed.
    bool tend(std::uint64_t nowMs, std::string& error);

    // Saves at once.
    bool saveNow(std::string& error);

  private:
    const SimulatedDevice& device_;
    std::filesystem::path path_;
    std::uint32_t seen_;
    std::uint64_t changedAtMs_ = 0;
    bool unsaved_ = false;
};

}  // namespace korvane
