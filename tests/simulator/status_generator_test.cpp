#include "simulator/status_generator.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

#include "simulator/panel_side.h"
#include "simulator/sample_configuration.h"

namespace korvane::test {
namespace {

class Status : public testing::Test {
  protected:
    const DeviceStatusImage& at(std::uint64_t ms) {
        generator_.advance(ms);
        generator_.write(image_);
        return image_;
    }

    // Sections of the last image that brought something once and bring nothing now.
    int silentInputs() const {
        int count = 0;
        for (std::size_t i = 0; i < image_.frameCount; ++i)
            for (const SubFrameStats& subFrame : image_.frames[i].subFrames)
                for (const SegmentStats& segment : subFrame.segments)
                    count += segment.inputBytes > 0 && segment.inputRateKbps == 0 ? 1 : 0;
        return count;
    }

    StatusGenerator generator_{1};
    DeviceStatusImage image_;
    std::unique_ptr<ConfigTables> tables_ = sampleTables();
};

TEST_F(Status, ShowsTheFramesOfBothTables) {
    generator_.restart(*tables_, 0);
    const DeviceStatusImage& status = at(1000);
    ASSERT_EQ(status.frameCount, 9);
    EXPECT_EQ(status.systemRate, 1000) << "8 Mbit/s in units of 8 kbit/s";
    const FrameStats& cinema = status.frames[5];
    EXPECT_EQ(cinema.id, 5);
    EXPECT_EQ(cinema.timeSlotCount, 4);
    EXPECT_EQ(cinema.timeSlots[0], 21);
    ASSERT_EQ(cinema.subFrameCount, 1);
    EXPECT_EQ(cinema.subFrames[0].serviceId, 105);
    EXPECT_EQ(cinema.subFrames[0].bandwidth, 480'000u);
    EXPECT_EQ(cinema.subFrames[0].segmentCount, 3) << "video, audio and the ECM as data";
    const SubFrameStats& radio = status.frames[3].subFrames[1];
    ASSERT_EQ(radio.segmentCount, 2) << "no video, but its place is kept";
    EXPECT_EQ(radio.segments[0].inputRateKbps, 0u);
    EXPECT_GT(radio.segments[1].inputRateKbps, 100u);
    EXPECT_EQ(status.frames[0].subFrames[0].segmentCount, 0);
    EXPECT_GT(status.frames[0].effectiveData, 0u) << "control tables come from inside";
    EXPECT_EQ(status.frames[7].id, 7) << "the first short-time frame";
}

TEST_F(Status, RatesStayNearTheirBandwidthAndBelowCapacity) {
    generator_.restart(*tables_, 0);
    std::uint32_t least = 0xFFFFFFFF, most = 0;
    for (std::uint64_t ms = 0; ms <= 25'000; ms += 500) {
        const DeviceStatusImage& status = at(ms);
        for (std::size_t i = 0; i < status.frameCount; ++i) {
            const FrameStats& frame = status.frames[i];
            EXPECT_GT(frame.effectiveData, 0u);
            EXPECT_LT(frame.effectiveData, frame.channelCapacity);
        }
        const std::uint32_t news = status.frames[1].subFrames[0].effectiveLength;
        least = std::min(least, news);
        most = std::max(most, news);
        EXPECT_LT(status.streamRate, 8'000'000u);
    }
    EXPECT_GT(least, 500'000u / 8 * 7 / 10);
    EXPECT_LT(most, 500'000u / 8);
    EXPECT_GT(most, least) << "it moves";
}

TEST_F(Status, CountersFollowTheRatesHoweverOftenTheyAreRead) {
    generator_.restart(*tables_, 0);
    const SegmentStats first = at(10'000).frames[1].subFrames[0].segments[0];
    const std::uint32_t sentBefore = image_.bytesSent;
    const SegmentStats second = at(20'000).frames[1].subFrames[0].segments[0];
    const std::uint32_t bytes = second.inputBytes - first.inputBytes;
    EXPECT_NEAR(bytes, second.inputRateKbps * 1000 / 8 * 10, bytes / 5);
    EXPECT_GT(second.ipPackets, first.ipPackets);
    EXPECT_NEAR(image_.bytesSent - sentBefore, image_.streamRate / 8 * 10, image_.streamRate / 8);
    const std::uint32_t sent = image_.bytesSent;
    EXPECT_EQ(at(20'000).bytesSent, sent);
    EXPECT_EQ(at(20'100).bytesSent, sent) << "between two steps";
    EXPECT_GT(at(3'620'000).bytesSent, sent) << "after an hour without a question";
    generator_.restart(*tables_, 3'620'000);
    EXPECT_EQ(at(3'620'000).bytesSent, 0u);
}

TEST_F(Status, SameSeedSameLife) {
    StatusGenerator other(1);
    generator_.restart(*tables_, 0);
    other.restart(*tables_, 0);
    DeviceStatusImage image;
    for (std::uint64_t ms = 0; ms < 200'000; ms += 2'000) {
        other.advance(ms);
        other.write(image);
        ASSERT_EQ(std::memcmp(&at(ms), &image, sizeof(image)), 0) << ms;
    }
}

TEST_F(Status, AlarmsComeAndGoWhereTheyAreSwitchedOn) {
    const auto alarmsSeen = [this](std::uint8_t switches) {
        tables_->outputParams.alarmSwitches = switches;
        generator_.restart(*tables_, 0);
        std::uint8_t seen = 0;
        std::uint8_t throughout = 0xFF;
        for (std::uint64_t ms = 0; ms < 2'000'000; ms += 1000) {
            seen |= at(ms).alarms;
            throughout &= image_.alarms;
        }
        EXPECT_EQ(throughout, 0) << "none is there all the time";
        return seen;
    };
    EXPECT_EQ(alarmsSeen(0x78), 0x78);
    EXPECT_EQ(alarmsSeen(0x28), 0x28);
    EXPECT_EQ(alarmsSeen(0x00), 0x00);
}

TEST_F(Status, AnInputIsMissingWhileTheDataAlarmIsOn) {
    generator_.restart(*tables_, 0);
    std::uint64_t ms = 0;
    const auto waitForDataAlarm = [&](std::uint8_t bit) {
        while ((at(ms).alarms & 8) != bit) {
            ms += 500;
            ASSERT_LT(ms, 3'600'000u);
        }
    };
    waitForDataAlarm(8);
    EXPECT_EQ(silentInputs(), 1);
    waitForDataAlarm(0);
    EXPECT_EQ(silentInputs(), 0);
}

TEST_F(Status, ForcedAlarmsOverrideTheSwitches) {
    tables_->outputParams.alarmSwitches = 8;
    generator_.restart(*tables_, 0);
    generator_.forceAlarms(0xF1);
    EXPECT_EQ(at(0).alarms, 0xF1);
    generator_.forceAlarms(std::nullopt);
    EXPECT_EQ(at(0).alarms, 0);
}

// More bandwidth than the frame carries: the device cuts, it cannot send more than its capacity.
TEST_F(Status, OverbookedFrameIsFullButNotFuller) {
    tables_->continuous.frames[1].services[0].bandwidth = 0xFFFFFFFF;
    generator_.restart(*tables_, 0);
    for (std::uint64_t ms = 0; ms < 20'000; ms += 1000) {
        const FrameStats& frame = at(ms).frames[1];
        EXPECT_LE(frame.effectiveData, frame.channelCapacity);
        EXPECT_GT(frame.effectiveData, frame.channelCapacity / 2);
    }
}

// The wire image follows what was applied last, not what was merely set.
TEST(StatusOfDevice, FollowsTheAppliedConfiguration) {
    SimulatedDevice device;
    PanelSide panel(device);
    EXPECT_EQ(panel.ask(4007).payload[11], 9);
    panel.ask(2000, {0});
    EXPECT_EQ(panel.statusOf(2009, Bytes(314244)), 0u) << "no short-time frames";
    panel.ask(2999, {0});
    EXPECT_EQ(panel.ask(4007).payload[11], 9);
    panel.ask(4000);
    const Bytes status = panel.ask(4007).payload;
    EXPECT_EQ(status[11], 7);
    const Bytes capacity(status.begin() + 12, status.begin() + 16);
    EXPECT_EQ(capacity, Bytes({0, 0, 0x21, 0xC0})) << "frame 0: BPSK, one slot, 8,640 bytes";
    panel.ask(4002);
    EXPECT_EQ(panel.ask(4007).payload[11], 9);
}

}  // namespace
}  // namespace korvane::test
