#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "device/status_records.h"
#include "model/records.h"
#include "simulator/answer_train.h"

namespace korvane {

// Live status that moves believably: what a multiplexer with this configuration and healthy inputs
// would report. Input rates wander just below the bandwidth limits, counters follow the rates, and
// now and then an input drops out or a clock reference is missed.
class StatusGenerator {
  public:
    explicit StatusGenerator(std::uint32_t seed) : random_(seed) {}

    // The configuration that is now applied. Counters of frames and services start again.
    void configure(const ConfigTables& tables, std::uint64_t nowMs);
    // Power on: the count of bytes sent starts again as well.
    void restart(const ConfigTables& tables, std::uint64_t nowMs);

    // Moves on to this time; times never run back.
    void advance(std::uint64_t nowMs);

    // In host order; every byte is written.
    void write(DeviceStatusImage& image) const;

    // These alarm bits whatever the switches say, until nothing is forced again.
    void forceAlarms(std::optional<std::uint8_t> bits) { forcedAlarms_ = bits; }
    std::uint8_t alarms() const;

  private:
    // The video, audio or data section of a sub-frame: what all components of that kind bring.
    struct Section {
        double nominalBps = 0;
        double level = 0.9;  // of nominal, 0.75-0.98
        double rateBps = 0;
        double bytes = 0;
        double packetSize = 1;
        bool silent = false;
    };
    struct SubFrame {
        std::uint8_t number = 0;
        std::uint16_t serviceId = 0;
        std::uint32_t bandwidth = 0;
        std::uint8_t sectionCount = 0;
        std::array<Section, 3> sections{};
        double internalBps = 0;  // control tables and guides that the device makes itself
    };
    struct Frame {
        std::uint8_t id = 0;
        std::uint32_t capacity = 0;  // bytes a second
        std::vector<std::uint8_t> timeSlots;
        std::vector<SubFrame> subFrames;
    };
    // One of the four alarms the panel shows: alternately off and on.
    struct Alarm {
        std::uint8_t bit = 0;
        bool active = false;
        std::uint64_t changesAtMs = 0;
    };

    void addTable(const MultiplexTable& table, TableKind kind);
    static SubFrame makeSubFrame(const ServiceRecord& service, double share, bool isControlFrame);
    void step(double seconds);
    void wander(Section& section, double seconds);
    void updateAlarms(std::uint64_t nowMs);
    void silenceOneInput();
    void writeFrame(const Frame& frame, FrameStats& stats) const;
    static std::uint32_t effectiveLength(const SubFrame& subFrame);
    static std::uint32_t effectiveData(const Frame& frame);
    double streamRate() const;
    std::uint32_t between(std::uint32_t least, std::uint32_t most);

    Random random_;
    std::vector<Frame> frames_;
    std::array<Alarm, 4> alarms_{{{3}, {4}, {5}, {6}}};
    std::uint8_t alarmSwitches_ = 0;
    std::uint32_t systemBitRate_ = 0;
    double bytesSent_ = 0;
    std::uint64_t lastStepMs_ = 0;
    std::optional<std::uint8_t> forcedAlarms_;
};

}  // namespace korvane
