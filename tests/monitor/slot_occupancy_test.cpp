#include "monitor/slot_occupancy.h"

#include <gtest/gtest.h>

#include "monitor/sample_status.h"

namespace korvane {
namespace {

struct Case {
    const char* what;
    std::vector<std::array<std::uint32_t, 3>> frames;            // slots, data, capacity
    std::vector<std::pair<std::size_t, std::uint64_t>> percent;  // of so many bars; the rest is 0
};

const Case cases[] = {
    {"nothing", {}, {}},
    {"one frame, rounded down", {{10, 755, 1000}}, {{10, 75}}},
    {"two frames in a row", {{3, 1, 2}, {2, 1, 3}}, {{3, 50}, {2, 33}}},
    {"no slots", {{0, 1, 2}, {1, 1, 4}}, {{1, 25}}},
    {"no capacity", {{2, 5, 0}, {1, 1, 1}}, {{2, 0}, {1, 100}}},
    {"more than all", {{40, 1, 1}, {5, 1, 2}}, {{40, 100}}},
    {"cut in the middle", {{38, 1, 1}, {5, 1, 2}}, {{38, 100}, {2, 50}}},
    {"a count that lies", {{255, 1, 4}}, {{40, 25}}},
    {"beyond 32 bits", {{1, 3000000000u, 4000000000u}}, {{1, 75}}},
    {"the utmost", {{1, 0xFFFFFFFF, 1}}, {{1, 429496729500u}}},
};

TEST(SlotOccupancy, GivesEachFrameAsManyBarsAsItHasSlots) {
    for (const Case& one : cases) {
        const test::StatusImage status = std::make_unique<DeviceStatusImage>();
        for (const auto& [slots, data, capacity] : one.frames) {
            FrameStats& frame = status->frames[status->frameCount++];
            frame.channelCapacity = capacity;
            frame.effectiveData = data;
            frame.timeSlotCount = static_cast<std::uint8_t>(slots);
        }
        std::vector<std::uint64_t> expected;
        for (const auto& [count, percent] : one.percent)
            expected.insert(expected.end(), count, percent);
        expected.resize(40);
        const auto bars = slotOccupancy(*status);
        EXPECT_EQ(std::vector<std::uint64_t>(bars.begin(), bars.end()), expected) << one.what;
    }
}

TEST(SlotOccupancy, CountsThatLieStayInTheirArrays) {
    for (const std::uint64_t bar : slotOccupancy(*test::lyingStatus())) EXPECT_EQ(bar, 100u);
}

}  // namespace
}  // namespace korvane
