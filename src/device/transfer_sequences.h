#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>

#include "device/device_client.h"
#include "device/transfer.h"
#include "model/config_model.h"

namespace korvane {

// Each sequence stops at its first failing command and returns its code; 0 is success. What was
// already sent to the device stays there.

// A whole configuration in host order, from the device; it changes only when all of it has arrived.
int fetchConfiguration(DeviceClient& client, Configuration& configuration, Progress& progress);

// A whole configuration in host order, to the device, which is told to make it take effect. The
// device parameters stay here. `stepsBefore`: what of the progress was done before.
int sendConfiguration(DeviceClient& client, const Configuration& configuration, Progress& progress,
                      std::uint32_t stepsBefore = 0);

// Writes the cache file, then sends the whole configuration and makes it take effect.
int runSave(DeviceClient& client, const ConfigModel& model, Progress& progress);

// Fetches the whole configuration; the model changes only when all of it has arrived.
int runLoad(DeviceClient& client, ConfigModel& model, Progress& progress);

// Results of the upgrade beside the device link's.
namespace upgrade_result {
inline constexpr int cannotOpen = -1;
inline constexpr int cannotRead = -2;
inline constexpr int stateUnknown = -3;  // the device took everything and then stopped answering
}  // namespace upgrade_result

// Sends a firmware file. When `stopRequested` answers true, no further piece is sent.
int runUpgrade(DeviceClient& client, DeviceLink& link, const std::filesystem::path& file,
               const std::function<bool()>& stopRequested, Progress& progress);

}  // namespace korvane
