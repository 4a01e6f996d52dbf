#include "monitor/slot_occupancy.h"

#include <gtest/gtest.h>

#include "monitor/sample_status.h"

namespace korvane {
namespace {

struct Frame {
    std::uint8_t slots;
    std::uint32_t data, capacity;
};

struct AlikeBars {
    std::size_t count;
    std::uint64_t percent;
};

struct Case {
    const char* what;
    std::vector<Frame> frames;
    std::vector<AlikeBars> bars;  // the rest is 0
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
    {"above capacity", {{1, 3, 2}}, {{1, 150}}},
    {"beyond 32 bits", {{1, 3000000000u, 4000000000u}}, {{1, 75}}},
    {"the utmost", {{1, 0xFFFFFFFF, 1}}, {{1, 429496729500u}}},
};

TEST(SlotOccupancy, GivesEachFrameAsManyBarsAsItHasSlots) {
    for (const Case& one : cases) {
        const test::StatusImage status = std::make_unique<DeviceStatusImage>();
        for (const Frame& frame : one.frames) {
            FrameStats& stats = status->frames[status->frameCount++];
            stats.channelCapacity = frame.capacity;
            stats.effectiveData = frame.data;
            stats.timeSlotCount = frame.slots;
        }
        std::vector<std::uint64_t> expected;
        for (const AlikeBars& bars : one.bars)
            expected.insert(expected.end(), bars.count, bars.percent);
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
