#pragma once

#include <filesystem>
#include <optional>

#include "device/device_manager.h"
#include "device/transfer_runner.h"
#include "model/prompts.h"

namespace korvane {

// The choice of a firmware file, and its way to the device.
class FirmwareUpgrade {
  public:
    // All of it outlives this object.
    FirmwareUpgrade(DeviceManager& manager, Prompts& prompts, TransferRunner& transfers)
        : manager_(manager), prompts_(prompts), transfers_(transfers) {}

    // Lets the operator choose a file. False when they did not, or when it has none of the names
    // that firmware has, which they are told; then the one chosen before stays.
    bool browse();
    // Empty until one has been chosen.
    const std::filesystem::path& file() const { return file_; }

    // Asks, sends the file and tells the outcome. The device is restarted by the operator.
    void run();

  private:
    DeviceManager& manager_;
    Prompts& prompts_;
    TransferRunner& transfers_;
    std::filesystem::path file_;
};

}  // namespace korvane
