#pragma once

#include <vector>

#include "device/status_records.h"

namespace korvane {

// Where the live views take the device's status from. Each call copies the latest one and returns
// at once.
class StatusSource {
  public:
    virtual ~StatusSource() = default;

    // 0 and the latest summary, or -1 while none has arrived.
    virtual int getStatusSummary(StatusSummary& out) const = 0;
    // 0 and the eight alarm bits appended, bit 0 first; without a valid status 1 (no news) or -1
    // (link lost).
    virtual int getAlarmBits(std::vector<bool>& out) const = 0;
    // 0 and the latest status, or -1 while the last poll failed; then `out` is unchanged.
    virtual int getDeviceStatusImage(DeviceStatusImage& out) const = 0;
    // Milliseconds since the latest status came.
    virtual std::uint32_t statusAgeMs() const = 0;
};

}  // namespace korvane
