#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "model/records.h"

// The device's live status, in host order; "BE" marks what is big-endian on the wire.

namespace korvane {

struct SegmentStats {             // 16 bytes: one input segment of a sub-frame
    std::uint32_t ipPackets;      // BE
    std::uint32_t inputBytes;     // BE
    std::uint32_t inputRateKbps;  // BE, kbit/s
    std::uint32_t carried12;      // BE
};
static_assert(sizeof(SegmentStats) == 16);

struct SubFrameStats {              // 144 bytes
    std::uint16_t id;               // BE
    std::uint16_t serviceId;        // BE
    std::uint32_t effectiveLength;  // BE, bytes
    std::uint32_t bandwidth;        // BE, bit/s
    std::array<std::uint8_t, 3> carried12;
    std::uint8_t segmentCount;  // 0-8
    std::array<SegmentStats, 8> segments;
};
static_assert(sizeof(SubFrameStats) == 144 && offsetof(SubFrameStats, segmentCount) == 15 &&
              offsetof(SubFrameStats, segments) == 16);

struct FrameStats {                 // 1,208 bytes
    std::uint32_t channelCapacity;  // BE, bytes
    std::uint32_t effectiveData;    // BE, bytes
    std::uint16_t id;               // BE
    std::array<std::uint8_t, 3> carried10;
    std::uint8_t timeSlotCount;  // 0-40
    std::array<std::uint8_t, limits::timeSlots> timeSlots;
    std::uint8_t subFrameCount;  // 0-8
    std::uint8_t carried55;
    std::array<SubFrameStats, limits::services> subFrames;
};
static_assert(sizeof(FrameStats) == 1208 && offsetof(FrameStats, timeSlotCount) == 13 &&
              offsetof(FrameStats, timeSlots) == 14 && offsetof(FrameStats, subFrameCount) == 54 &&
              offsetof(FrameStats, subFrames) == 56);

struct DeviceStatusImage {     // 48,332 bytes
    std::uint32_t bytesSent;   // BE, by the multiplexer
    std::uint32_t streamRate;  // BE, bit/s of the multiplex stream
    std::uint16_t systemRate;  // BE, units of 8 kbit/s
    std::uint8_t alarms;       // bit 3 data input, bit 4 1PPS, bit 5 10M, bit 6 TOD
    std::uint8_t frameCount;   // 0-40
    std::array<FrameStats, limits::frames> frames;
};
static_assert(sizeof(DeviceStatusImage) == 48332 && offsetof(DeviceStatusImage, alarms) == 10 &&
              offsetof(DeviceStatusImage, frames) == 12);
static_assert(std::is_trivially_copyable_v<DeviceStatusImage>);

struct StatusSummary {  // 18 bytes on the wire, nine 16-bit BE values; held as 20
    static constexpr std::size_t wireSize = 18;

    std::uint16_t carried0;
    std::uint16_t year;
    std::uint16_t month;
    std::uint16_t day;
    std::uint16_t carried8;
    std::uint16_t hour;
    std::uint16_t minute;
    std::uint16_t second;
    std::uint16_t carried16;
    std::uint16_t padding;
};
static_assert(sizeof(StatusSummary) == 20 && offsetof(StatusSummary, hour) == 10 &&
              offsetof(StatusSummary, padding) == StatusSummary::wireSize);

// Convert what the counts call meaningful, each count held to its array, and leave the rest as it
// is. Counts and plain bytes never change.
void toNetworkOrder(DeviceStatusImage& image);
void fromNetworkOrder(DeviceStatusImage& image);
void toNetworkOrder(StatusSummary& summary);
void fromNetworkOrder(StatusSummary& summary);

}  // namespace korvane
