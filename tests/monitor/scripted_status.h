#pragma once

#include "device/status_source.h"

namespace korvane::test {

// A status that says what the test wants.
class ScriptedStatus : public StatusSource {
  public:
    int getStatusSummary(StatusSummary& out) const override {
        if (summaryResult == 0) out = summary;
        return summaryResult;
    }
    int getAlarmBits(std::vector<bool>& out) const override {
        for (int bit = 0; alarmResult == 0 && bit < 8; ++bit) out.push_back(alarms >> bit & 1);
        return alarmResult;
    }
    int getDeviceStatusImage(DeviceStatusImage& out) const override {
        if (imageResult == 0) out = image;
        return imageResult;
    }

    std::uint32_t statusAgeMs() const override { return ageMs; }

    std::uint32_t ageMs = 0;
    int summaryResult = -1, alarmResult = 1, imageResult = -1;
    StatusSummary summary{};
    unsigned alarms = 0;
    DeviceStatusImage image{};
};

}  // namespace korvane::test
