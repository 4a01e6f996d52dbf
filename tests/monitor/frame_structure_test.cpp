#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "monitor/sample_status.h"

namespace korvane {
namespace {

using test::outline;
using testing::Contains;
using testing::ElementsAre;

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

TEST(FrameStructure, CountsThatLieStayInTheirArrays) {
    const auto lines = outline(*test::lyingStatus());
    EXPECT_EQ(lines.size(), 4u + 40 * (7 + 8 * (6 + 8 * 4)));
    EXPECT_EQ(lines[3], "复用帧个数:255");
    EXPECT_THAT(lines, Contains("复用帧39"));
    EXPECT_THAT(lines, Contains(".时隙数:255").Times(40));
    EXPECT_EQ(std::ranges::count(lines[9], ','), 39) << "slots";
    EXPECT_THAT(lines, Contains("..段7").Times(40 * 8));
    EXPECT_EQ(lines[lines.size() - 4], "..段7") << "numbered anew in each sub-frame";
}

}  // namespace
}  // namespace korvane
