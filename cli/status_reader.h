#pragma once

#include "cli/device.h"
#include "device/status_poller.h"
#include "device/status_source.h"

namespace korvane::cli {

// A device's status, asked for one by one.
class StatusReader : public StatusSource {
  public:
    StatusReader(Context& context, const std::string& address)
        : link_(context.link),
          device_(context, address),
          poller_(device_.client(), context.link, cache_, plainThreads()) {}

    // Asks. 0, or the device link's result.
    int read() { return poller_.pollOnce(); }
    const Device& device() const { return device_; }

    int getStatusSummary(StatusSummary& out) const override { return cache_.summary(out) ? 0 : -1; }
    int getAlarmBits(std::vector<bool>& out) const override {
        return cache_.alarmBits(out) ? 0 : -1;
    }
    int getDeviceStatusImage(DeviceStatusImage& out) const override {
        return cache_.image(out) ? 0 : -1;
    }
    std::uint32_t statusAgeMs() const override { return link_.ticks() - cache_.imageTime(); }

  private:
    DeviceLink& link_;
    Device device_;
    StatusCache cache_;
    StatusPoller poller_;
};

}  // namespace korvane::cli
