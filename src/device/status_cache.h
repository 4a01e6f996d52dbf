#pragma once

#include <mutex>
#include <vector>

#include "device/status_records.h"

namespace korvane {

// The device's latest status, written by the poller and copied out by the views. Every access holds
// the lock for one copy and no longer.
class StatusCache {
  public:
    // Times are ticks in milliseconds, which may wrap.
    void clear(std::uint32_t now);
    void storeSummary(const StatusSummary& summary);
    void storeImage(const DeviceStatusImage& image, std::uint32_t now);
    // The last poll failed: the image is out of date, the summary stays.
    void invalidateImage();

    // False, and `out` unchanged, while there is none.
    bool summary(StatusSummary& out) const;
    bool image(DeviceStatusImage& out) const;
    bool alarms(std::uint8_t& out) const;
    // Likewise, the eight bits appended, bit 0 first.
    bool alarmBits(std::vector<bool>& out) const;
    // When the latest image came, valid or not; while none has, when the cache was cleared.
    std::uint32_t imageTime() const;

  private:
    mutable std::mutex lock_;
    std::uint32_t imageTime_ = 0;
    bool imageValid_ = false;
    bool summaryValid_ = false;
    DeviceStatusImage image_{};
    StatusSummary summary_{};
};

}  // namespace korvane
