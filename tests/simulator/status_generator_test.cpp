#include "simulator/status_generator.h"

#include <algorithm>

#include "simulator/dialogue.h"

namespace korvane::test {
namespace {

class Status : public testing::Test {
  protected:
    Status() { generator_.restart(*tables_, 0); }

    const DeviceStatusImage& at(std::uint64_t ms) {
        generator_.advance(ms);
        before_ = image_;
        generator_.write(image_);
        return image_;
    }
    // Sections that brought something once and bring nothing now.
    int silentInputs() const {
        int count = 0;
        for (std::size_t i = 0; i < image_.frameCount * 8u; ++i)
            for (std::size_t k = 0; k < 8; ++k) {
                const SegmentStats& now = image_.frames[i / 8].subFrames[i % 8].segments[k];
                const SegmentStats& then = before_.frames[i / 8].subFrames[i % 8].segments[k];
                count += now.inputBytes > 0 && now.inputRateKbps == 0 &&
                         now.inputBytes == then.inputBytes;
            }
        return count;
    }

    StatusGenerator generator_{1};
    DeviceStatusImage image_{}, before_{};
    std::unique_ptr<ConfigTables> tables_ = sampleTables();
};

// Of each frame the id, count and first of its slots, capacity, and the services with number,
// bandwidth and segments. Radio has no video, but its place is kept; an ECM is data.
TEST_F(Status, ShowsTheFramesOfBothTables) {
    at(1000);
    std::ostringstream seen;
    for (std::size_t i = 0; i < image_.frameCount; ++i) {
        const FrameStats& frame = image_.frames[i];
        seen << frame.id << ':' << int{frame.timeSlotCount} << '@' << int{frame.timeSlots[0]} << ' '
             << frame.channelCapacity << " bytes";
        for (std::size_t k = 0; k < frame.subFrameCount; ++k) {
            const SubFrameStats& one = frame.subFrames[k];
            seen << ' ' << one.id << '=' << one.serviceId << '/' << one.bandwidth / 1000 << 'k'
                 << int{one.segmentCount};
        }
        seen << '\n';
    }
    EXPECT_EQ(seen.str(),
              "0:1@0 8640 bytes 1=1/8k0 2=2/8k0 3=3/8k0 4=4/8k0 5=5/8k0 6=6/8k0 7=7/8k0 8=8/8k0\n"
              "1:8@1 129024 bytes 1=101/500k2 2=102/500k2\n"
              "2:4@9 129024 bytes 1=103/520k2 2=104/480k2\n"
              "3:4@13 64512 bytes 1=201/160k3 2=202/160k2 3=203/160k2\n"
              "4:4@17 82944 bytes 1=301/400k3 2=302/128k3 3=303/64k3\n"
              "5:4@21 64512 bytes 1=105/480k3\n6:4@25 64512 bytes 1=106/512k2\n"
              "7:4@29 64512 bytes 1=401/480k2\n8:2@33 38016 bytes 1=402/256k3\n");
    const SubFrameStats& radio = image_.frames[3].subFrames[1];
    EXPECT_EQ(radio.segments[0].inputRateKbps, 0u);
    EXPECT_NEAR(radio.segments[1].inputRateKbps, 140u, 20);
    EXPECT_NEAR(image_.frames[0].effectiveData, 8 * 900, 8) << "made by the device itself";
}

// Of a frame that has more bandwidth than it carries the device cuts all services alike.
TEST_F(Status, RatesStayNearTheirBandwidthAndBelowCapacity) {
    tables_->continuous.frames[2].services[0].bandwidth = 0xFFFFFFFF;
    generator_.restart(*tables_, 0);
    std::uint32_t most = 0;
    for (std::uint64_t ms = 0; ms <= 25'000; ms += 500) {
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i < at(ms).frameCount; ++i) {
            const FrameStats& frame = image_.frames[i];
            EXPECT_LT(frame.effectiveData, frame.channelCapacity);
            std::uint32_t length = 0;
            for (const SubFrameStats& one : frame.subFrames) length += one.effectiveLength;
            EXPECT_EQ(frame.effectiveData, length);
            sum += length;
        }
        EXPECT_EQ(image_.streamRate, sum * 8);
        EXPECT_GT(image_.frames[2].effectiveData, image_.frames[2].channelCapacity / 2);
        const SubFrameStats& news = image_.frames[1].subFrames[0];
        const auto video = news.segments[0].inputRateKbps, audio = news.segments[1].inputRateKbps;
        EXPECT_NEAR(video + audio, news.effectiveLength * 8 / 1000, 2);
        EXPECT_NEAR(video / audio, 320 / 48, 2);
        most = std::max(most, news.effectiveLength);
    }
    EXPECT_LT(most, 500'000u / 8);
    EXPECT_GT(most, image_.frames[1].subFrames[0].effectiveLength) << "it moves";
}

TEST_F(Status, CountersFollowTheRatesHoweverOftenTheyAreRead) {
    const SegmentStats first = at(10'000).frames[1].subFrames[0].segments[0];
    const std::uint32_t sentBefore = image_.bytesSent;
    const SegmentStats second = at(20'000).frames[1].subFrames[0].segments[0];
    const std::uint32_t bytes = second.inputBytes - first.inputBytes, sent = image_.bytesSent;
    EXPECT_NEAR(bytes, second.inputRateKbps * 1000 / 8 * 10, bytes / 5);
    EXPECT_NEAR(second.ipPackets - first.ipPackets, bytes / 1180, 2);
    EXPECT_NEAR(sent - sentBefore, image_.streamRate / 8 * 10, image_.streamRate / 8);
    EXPECT_EQ(at(20'100).bytesSent, sent) << "between two steps";
    const std::uint32_t hour = at(3'620'000).bytesSent - sent;
    EXPECT_NEAR(hour, image_.streamRate / 8 * 3600.0, hour / 10) << "without a question";
    at(100'000'000);
    EXPECT_NE(image_.bytesSent, 0xFFFFFFFF) << "wraps";
    generator_.configure(*tables_, 100'000'000);
    EXPECT_GT(at(100'000'000).bytesSent, 0u);
    EXPECT_EQ(image_.frames[1].subFrames[0].segments[0].inputBytes, 0u);
    generator_.restart(*tables_, 100'000'000);
    EXPECT_EQ(at(100'000'000).bytesSent, 0u);
}

TEST_F(Status, SameSeedSameLife) {
    const auto life = [this](std::uint32_t seed) {
        generator_ = StatusGenerator(seed);
        generator_.restart(*tables_, 0);
        for (std::uint64_t ms = 0; ms < 200'000; ms += 2'000) at(ms);
        return std::string(reinterpret_cast<const char*>(&image_), sizeof(image_));
    };
    EXPECT_TRUE(life(1) == life(1));
    EXPECT_FALSE(life(1) == life(2));
}

TEST_F(Status, AlarmsComeAndGoWhereTheyAreSwitchedOn) {
    for (const int switches : {0x78, 0x28, 0x00}) {
        tables_->outputParams.alarmSwitches = static_cast<std::uint8_t>(switches);
        generator_.restart(*tables_, 0);
        int seen = 0, throughout = 0xFF, turns = 0;
        for (std::uint64_t ms = 0; ms < 2'000'000; ms += 1000) {
            const int before = image_.alarms;
            seen |= at(ms).alarms;
            throughout &= image_.alarms;
            turns += image_.alarms != before ? 1 : 0;
        }
        EXPECT_EQ(seen, switches);
        EXPECT_EQ(throughout, 0) << "none is there all the time";
        EXPECT_LT(turns, 120) << "nor flickers";
    }
}

TEST_F(Status, AnInputIsMissingWhileTheDataAlarmIsOn) {
    std::uint64_t ms = 0;
    for (const int alarm : {8, 0}) {
        for (; (at(ms).alarms & 8) != alarm; ms += 500) ASSERT_LT(ms, 3'600'000u);
        at(ms + 500);
        at(ms + 1000);
        EXPECT_EQ(silentInputs(), alarm / 8);
    }
}

// The wire image follows what was applied last, not what was merely set.
TEST(StatusOfDevice, FollowsTheAppliedConfiguration) {
    Dialogue talk;
    talk.play(
        "alarms 0x79 | 2000 00 | 2009 /314244 | 2999 00 | status -> ~; 9 frames | +60000 | "
        "4000 | status -> ~; 7 frames");
    const Bytes wire = talk.panel.ask(4007).payload;
    EXPECT_EQ(Bytes(wire.begin() + 8, wire.begin() + 16),
              Bytes({0x03, 0xE8, 0x79, 7, 0, 0, 0x21, 0xC0}))
        << "8 Mbit/s, the first frame carries 8,640 bytes";
    EXPECT_GT(wire[0], 0) << "more than 16 million bytes in the minute before";
    talk.play("4002 | status -> ~; 9 frames");
}

// Counts above the arrays, in every place that has one.
TEST(StatusOfDevice, ImageFullOfOnesIsAppliedAndReported) {
    Dialogue talk;
    talk.play(
        "2000 FF | 2001 ^13 | 2003 ^624 | 2004 ^314244 | 2005 ^168 | 2006 ^264 | 2007 ^92 | "
        "2008 ^72 | 2009 ^314244 | 2010 ^168 | 2999 FF | 103 ^41944 | 4000 | +1000000");
    const Bytes wire = talk.panel.ask(4007).payload;
    ASSERT_EQ(wire.size(), 48332u);
    EXPECT_EQ(Bytes({wire[11], wire[12 + 13], wire[12 + 54]}), Bytes({40, 40, 8}))
        << "frames, time slots of the first, its sub-frames";
}

}  // namespace
}  // namespace korvane::test
