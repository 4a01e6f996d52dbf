#include <algorithm>
#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <memory>
#include <stdexcept>
#include <thread>

#include "device/status_cache.h"
#include "device/status_poller.h"
#include "model/object_bytes.h"
#include "support/bytes.h"
#include "support/recorded_log.h"
#include "support/scripted_link.h"

namespace korvane {
namespace {

using test::Bytes;
using test::bytesAt;
using test::frameOf;

TEST(StatusRecords, ExactlyTheMeaningfulNumbersAreTurned) {
    // Every byte holds the low byte of its offset, so that a turned field shows.
    auto image = std::make_unique<DeviceStatusImage>();
    auto* bytes = reinterpret_cast<std::uint8_t*>(image.get());
    for (std::size_t i = 0; i < sizeof *image; ++i) bytes[i] = static_cast<std::uint8_t>(i);
    image->frameCount = 1;
    image->frames[0].subFrameCount = 1;
    image->frames[0].subFrames[0].segmentCount = 1;
    fromNetworkOrder(*image);
    EXPECT_EQ(bytesAt(*image, 0, 12), "03 02 01 00 07 06 05 04 09 08 0A 01");
    const std::size_t frame = 12;
    EXPECT_EQ(bytesAt(*image, frame, 14), "0F 0E 0D 0C 13 12 11 10 15 14 16 17 18 19");
    const std::size_t subFrame = frame + 56;
    EXPECT_EQ(bytesAt(*image, subFrame - 2, 2), "01 43");
    EXPECT_EQ(bytesAt(*image, subFrame, 16), "45 44 47 46 4B 4A 49 48 4F 4E 4D 4C 50 51 52 01");
    EXPECT_EQ(bytesAt(*image, subFrame + 16, 16),
              "57 56 55 54 5B 5A 59 58 5F 5E 5D 5C 63 62 61 60");
    EXPECT_EQ(bytesAt(*image, subFrame + 32, 4), "64 65 66 67");   // second segment
    EXPECT_EQ(bytesAt(*image, subFrame + 144, 4), "D4 D5 D6 D7");  // second sub-frame
    EXPECT_EQ(bytesAt(*image, frame + 1208, 4), "C4 C5 C6 C7");    // second frame
}

TEST(StatusRecords, CountsThatLieStayInTheirArrays) {
    auto image = std::make_unique<DeviceStatusImage>();
    std::memset(static_cast<void*>(image.get()), 0xFF, sizeof *image);
    const std::string before = test::wholeBytes(*image);
    fromNetworkOrder(*image);
    toNetworkOrder(*image);
    EXPECT_EQ(test::wholeBytes(*image), before);
}

// All bytes of an image are alike, so that a copy made of two writes shows. Under the thread
// sanitizer this is also the test of every access to the cache.
TEST(StatusCache, EveryCopyIsWholeWhileThePollerWrites) {
    StatusCache cache;
    std::atomic<int> torn{0}, copies{0};
    std::thread reader([&] {
        const auto image = std::make_unique<DeviceStatusImage>();
        StatusSummary summary{};
        for (std::uint8_t alarms = 0; copies < 1000; cache.alarms(alarms)) {
            if (cache.summary(summary)) torn += summary.year != summary.second;
            if (!cache.image(*image)) continue;
            const auto bytes = bytesOf(*image);
            torn += !std::equal(bytes.begin() + 1, bytes.end(), bytes.begin());
            ++copies;
        }
    });
    const auto image = std::make_unique<DeviceStatusImage>();
    for (int i = 0; copies < 1000; ++i) {
        const auto number = static_cast<std::uint16_t>(i);
        cache.storeSummary({0, number, 0, 0, 0, 0, 0, number, 0, 0});
        std::ranges::fill(writableBytesOf(*image), static_cast<std::uint8_t>(i));
        cache.storeImage(*image, 1);
        if (i % 50 == 0) cache.clear(2);
    }
    reader.join();
    EXPECT_EQ(torn, 0);
}

class Poller : public testing::Test {
  protected:
    Poller() { client_.Start("10.1.2.3"); }

    void answersAll() {
        link_.answers(frameOf(4006, 0, {0, 1}));
        link_.answers(
            frameOf(4008, 0, {0, 0, 0x07, 0xEA, 0, 11, 0, 21, 0, 6, 0, 9, 0, 43, 0, 47, 0, 1}));
        Bytes status(48332);
        status[10] = 0x78;
        status[7] = 9;
        link_.answers(frameOf(4007, 0, status));
    }
    bool imageValid() const {
        auto image = std::make_unique<DeviceStatusImage>();
        return cache_.image(*image);
    }

    test::ScriptedLink link_;
    DeviceClient client_{link_};
    StatusCache cache_;
    StatusPoller poller_{client_, link_, cache_, plainThreads()};
};

TEST_F(Poller, StoresSummaryAndImageInHostOrder) {
    StatusSummary summary{};
    EXPECT_FALSE(cache_.summary(summary));
    answersAll();
    poller_.pollOnce();
    ASSERT_TRUE(cache_.summary(summary));
    EXPECT_EQ(summary.year, 2026);
    EXPECT_EQ(summary.second, 47);
    std::uint8_t alarms = 0;
    ASSERT_TRUE(cache_.alarms(alarms));
    EXPECT_EQ(alarms, 0x78);
    auto image = std::make_unique<DeviceStatusImage>();
    ASSERT_TRUE(cache_.image(*image));
    EXPECT_EQ(image->streamRate, 9u);
    EXPECT_EQ(link_.log, "send send send ");
}

TEST_F(Poller, EachFailureInvalidatesTheImageAndEndsThePollButKeepsTheSummary) {
    const Bytes newest = {0, 0, 0, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    const std::pair<std::size_t, std::vector<Bytes>> cases[] = {
        {1, {}},
        {2, {frameOf(4006, 0, {0, 1})}},
        {2, {frameOf(4006, 0, {0, 1}), frameOf(4008, 0, {1, 2, 3})}},
        {3, {frameOf(4006, 0, {0, 1}), frameOf(4008, 0, newest), frameOf(4007, 0, Bytes(48331))}},
    };
    for (const auto& [asked, answers] : cases) {
        answersAll();
        poller_.pollOnce();
        ASSERT_TRUE(imageValid());
        link_.sent.clear();
        for (const Bytes& answer : answers) link_.answers(answer);
        poller_.pollOnce();
        EXPECT_FALSE(imageValid());
        EXPECT_EQ(link_.sent.size(), asked);
        StatusSummary summary{};
        ASSERT_TRUE(cache_.summary(summary));
        EXPECT_EQ(summary.year, asked == 3 ? 7 : 2026) << "the newest that came whole";
    }
    EXPECT_TRUE(link_.pinged.empty());
}

TEST_F(Poller, TheLogHasALineWhenTheLinkIsLostOrFoundAndNoneAPoll) {
    test::RecordedLog log;
    for (const bool answered : {true, true, false, false, true, true}) {
        if (answered) answersAll();
        poller_.pollOnce();
    }
    EXPECT_EQ(log.lines(), (std::vector<std::string>{"0 设备连接正常", "1 设备连接中断, 结果-2",
                                                     "1 设备连接恢复"}));
}

// Of a row of polls that end so, the first is in the log with all that is known.
TEST_F(Poller, AFaultFailsThatPollAndGivesTheLinkBack) {
    test::RecordedLog log;
    link_.before = [](std::string_view, std::uint32_t) { throw std::runtime_error("planted"); };
    for (int i = 0; i < 3; ++i) poller_.pollOnce();
    EXPECT_EQ(log.count("状态轮询异常: planted"), 1);
    link_.before = [](std::string_view, std::uint32_t) {};
    link_.staysSilent();
    link_.answers(frameOf(4001, 0));
    std::thread([this] { EXPECT_EQ(client_.RebootDevice(), 0); }).join();
    EXPECT_EQ(link_.receiveTimeouts.front(), 3000u) << "not the poller's";
}

TEST_F(Poller, PollsEveryTwoSecondsAndEndsSoonAfterItIsAsked) {
    link_.before = [this](std::string_view call, std::uint32_t) {
        if (call == "sleep" && link_.slept.size() == 38) poller_.requestStop();
    };
    ASSERT_EQ(poller_.start(), 0);
    poller_.join();
    EXPECT_TRUE(poller_.ended());
    EXPECT_EQ(link_.slept, std::vector<std::uint32_t>(39, 100));
    const auto second = link_.log.find("send", 1);
    EXPECT_EQ(link_.log.substr(0, second).size(),
              std::strlen("send ") + 20 * std::strlen("sleep100 "));
    EXPECT_EQ(link_.sent.size(), 2u);
}

}  // namespace
}  // namespace korvane
