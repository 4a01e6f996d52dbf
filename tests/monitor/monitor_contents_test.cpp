#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/indicators.h"
#include "monitor/sample_status.h"
#include "monitor/scripted_status.h"
#include "monitor/service_rows.h"
#include "monitor/slot_occupancy.h"
#include "monitor/stale_status.h"

// What the monitoring pages show, apart from their windows.

namespace korvane {
namespace {

using test::outline;
using testing::Contains;
using testing::ElementsAre;

TEST(Indicators, TimeOfDay) {
    test::ScriptedStatus status;
    EXPECT_EQ(timeOfDayLine(status), "TOD：无输入");
    status.summaryResult = 0;
    status.summary = {77, 2009, 4, 23, 88, 8, 5, 9, 99, 0};
    EXPECT_EQ(timeOfDayLine(status), "TOD: 2009-04-23 08:05:09");
    status.summary = {0, 65535, 65535, 0, 0, 65535, 65535, 65535, 0, 0};
    EXPECT_EQ(timeOfDayLine(status), "TOD: 65535-65535-00 65535:65535:65535");
}

// Since when, does not depend on how often it is said.
TEST(StaleStatus, SaysSinceWhenUntilTheNextStatus) {
    std::tm clock{};
    clock.tm_year = 126;
    clock.tm_mday = 1;
    clock.tm_hour = 12;
    clock.tm_min = 3;
    clock.tm_sec = 11;
    const std::time_t now = std::mktime(&clock);
    StaleStatus stale;
    EXPECT_EQ(stale.line(5000, now), "");
    for (const int later : {0, 1, 90})
        EXPECT_EQ(stale.line(6400 + later * 1000, now + later + later / 90),
                  "状态自 12:03:05 起未更新");
    EXPECT_EQ(stale.line(0, now + 100), "");
    EXPECT_EQ(stale.line(5001, now + 200), "状态自 12:06:26 起未更新");
}

TEST(FrameStructure, TellsEveryLevelInOrder) {
    EXPECT_THAT(
        outline(*test::smallMultiplex()),
        ElementsAre("系统码率:8000 Kbps", "复用流码率:4379 Kbps", "发送字节数:4000000000 Bytes",
                    "复用帧个数:2", "复用帧0", ".复用帧ID:5", ".信道容量:69120 Bytes",
                    ".有效数据量:60826 Bytes", ".时隙数:3", ".时隙:[3,7,39]", ".子帧个数:2",
                    ".子帧0", "..子帧ID:1", "..业务ID:101", "..带宽:450000 bps",
                    "..有效长度:50784 Bytes", "..段个数:2", "..段0", "...IP包个数:223",
                    "...输入码率:347 Kbps", "...输入字节数:263140 Bytes", "..段1",
                    "...IP包个数:106", "...输入码率:58 Kbps", "...输入字节数:39432 Bytes", ".子帧1",
                    "..子帧ID:2", "..业务ID:65535", "..带宽:8000 bps", "..有效长度:900 Bytes",
                    "..段个数:0", "复用帧1", ".复用帧ID:300", ".信道容量:0 Bytes",
                    ".有效数据量:0 Bytes", ".时隙数:0", ".时隙:[]", ".子帧个数:0"));
}

TEST(FrameStructure, RoundsDownAndKeepsTheWholeRange) {
    const test::StatusImage status = std::make_unique<DeviceStatusImage>();
    status->bytesSent = 0xFFFFFFFF;
    status->streamRate = 999;
    status->systemRate = 0xFFFF;
    EXPECT_THAT(outline(*status), ElementsAre("系统码率:524280 Kbps", "复用流码率:0 Kbps",
                                              "发送字节数:4294967295 Bytes", "复用帧个数:0"));
}

TEST(ServiceRows, ShowAtMostThreeSegmentsAndCountOnAcrossFrames) {
    const test::StatusImage status = std::make_unique<DeviceStatusImage>();
    status->frameCount = 3;
    for (const std::uint32_t frame : {0u, 2u}) {
        status->frames[frame].subFrameCount = 1;
        SubFrameStats& subFrame = status->frames[frame].subFrames[0];
        subFrame.segmentCount = 5;
        for (std::uint32_t k = 0; k < 5; ++k)
            subFrame.segments[k] = {1000 + 10 * frame + k, 0, 10 * frame + k, 0};
    }
    EXPECT_THAT(serviceRows(*status),
                ElementsAre(ElementsAre("0", "0", "0", "0", "1000", "1", "1001", "2", "1002"),
                            ElementsAre("1", "0", "0", "20", "1020", "21", "1021", "22", "1022")));
}

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

TEST(MonitorContents, OfCountsThatLieStayInTheirArrays) {
    const auto status = test::lyingStatus();
    const auto lines = outline(*status);
    EXPECT_EQ(lines.size(), 4u + 40 * (7 + 8 * (6 + 8 * 4)));
    EXPECT_EQ(lines[3], "复用帧个数:255");
    EXPECT_THAT(lines, Contains("复用帧39"));
    EXPECT_THAT(lines, Contains(".时隙数:255").Times(40));
    EXPECT_EQ(std::ranges::count(lines[9], ','), 39) << "slots";
    EXPECT_THAT(lines, Contains("..段7").Times(40 * 8));
    EXPECT_EQ(lines[lines.size() - 4], "..段7") << "numbered anew in each sub-frame";
    const auto rows = serviceRows(*status);
    ASSERT_EQ(rows.size(), 320u);
    EXPECT_THAT(rows.back(), ElementsAre("319", "65535", "4294967295", "4294967295", "4294967295",
                                         "4294967295", "4294967295", "4294967295", "4294967295"));
    EXPECT_THAT(slotOccupancy(*status), testing::Each(100u));
}

}  // namespace
}  // namespace korvane
