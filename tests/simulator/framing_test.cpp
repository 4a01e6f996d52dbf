#include <gtest/gtest.h>

#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

class Framing : public testing::Test {
  protected:
    SimulatedDevice device_;
    PanelSide panel_{device_};
};

TEST_F(Framing, HeartbeatBytesOnTheWire) {
    const Bytes request = {0, 0, 0x0F, 0xA6, 0, 0, 0, 0, 0, 0, 0, 0};  // 4006
    const auto answer = panel_.send(request);
    ASSERT_EQ(answer.size(), 1u);
    EXPECT_EQ(answer[0].to, panelEndpoint);
    EXPECT_EQ(answer[0].sendAtMs, 0u);
    const Bytes expected = {0, 0, 0x0F, 0xA6, 0, 0, 0, 0, 0, 0, 0, 2, 0, 1};
    EXPECT_EQ(answer[0].bytes, expected);
}

TEST_F(Framing, LongAnswerIsAnnouncedAndPaced) {
    panel_.nowMs = 700;
    const auto answer = panel_.send(requestFrame(3004));
    ASSERT_EQ(answer.size(), 1u + 11u);  // 314,256 bytes: ten chunks and a rest of 7,056
    const Bytes announcement = {0x11, 0x22, 0, 0, 0, 0x04, 0xCB, 0x90};
    EXPECT_EQ(answer[0].bytes, announcement);
    for (std::size_t i = 1; i <= 10; ++i) {
        EXPECT_EQ(answer[i].bytes.size(), 30720u);
        EXPECT_EQ(answer[i].sendAtMs, 700 + (i - 1) * 50);
    }
    EXPECT_EQ(answer[11].bytes.size(), 7056u);
    EXPECT_EQ(readReply(answer).lengthField, 314244u);
}

TEST_F(Framing, AnswersUpToTheLargestDatagramAreNotAnnounced) {
    std::string error;
    for (const auto& [size, datagrams] :
         {std::pair(65524, 1u), std::pair(65525, 1u + 3u), std::pair(61429, 1u)}) {
        device_.faults().clear();
        device_.faults().add(*parseFault("wrong-size=" + std::to_string(size), error));
        const Reply reply = panel_.ask(4006);
        EXPECT_EQ(reply.datagrams, datagrams) << size;
        EXPECT_EQ(reply.payload.size(), static_cast<std::size_t>(size));
    }
}

TEST_F(Framing, LongRequestIsPutTogether) {
    EXPECT_EQ(panel_.statusOf(2000, {1}), 0u);
    const Bytes block = pattern(314244, 3);
    EXPECT_EQ(panel_.statusOf(2004, block), 0u);
    EXPECT_EQ(panel_.ask(3004).payload, block);
}

TEST_F(Framing, TrainsOfTwoSendersDoNotMix) {
    const Endpoint other{panelEndpoint.address, 40001};
    EXPECT_EQ(panel_.statusOf(2000, {1}), 0u);
    const Bytes mine = requestFrame(2004, pattern(314244, 1));
    const Bytes theirs = requestFrame(2009, pattern(314244, 2));
    panel_.send(announcementOf(314256));
    panel_.send(announcementOf(314256), other);
    for (std::size_t at = 0; at < mine.size(); at += 30720) {
        const auto from = static_cast<std::ptrdiff_t>(at);
        const auto to = static_cast<std::ptrdiff_t>(std::min(at + 30720, mine.size()));
        panel_.send(Bytes(mine.begin() + from, mine.begin() + to));
        panel_.send(Bytes(theirs.begin() + from, theirs.begin() + to), other);
    }
    EXPECT_EQ(panel_.ask(3004).payload, pattern(314244, 1));
    EXPECT_EQ(panel_.ask(3009).payload, pattern(314244, 2));
}

TEST_F(Framing, TrainThatEndsLikeAnAnnouncement) {
    Bytes message = requestFrame(103, pattern(41944, 5));
    const Bytes end = announcementOf(70000);
    std::copy(end.begin(), end.end(), message.end() - 8);
    panel_.send(announcementOf(static_cast<std::uint32_t>(message.size())));
    EXPECT_TRUE(panel_.send(Bytes(message.begin(), message.end() - 8)).empty());
    const Reply reply = readReply(panel_.send(Bytes(message.end() - 8, message.end())));
    EXPECT_EQ(reply.code, 103u);
    EXPECT_EQ(reply.status, 0u);
}

TEST_F(Framing, UnfinishedTrainIsGivenUpAfterTwoSeconds) {
    panel_.send(announcementOf(314256));
    panel_.send(pattern(30720, 0));
    EXPECT_TRUE(panel_.send(requestFrame(4006)).empty()) << "taken for a part of the train";
    panel_.nowMs += 2000;
    EXPECT_TRUE(panel_.send(requestFrame(4006)).empty()) << "the train may still go on";
    panel_.nowMs += 2001;
    EXPECT_EQ(panel_.statusOf(4006), 0u);
}

TEST_F(Framing, NewAnnouncementReplacesAnUnfinishedTrain) {
    EXPECT_EQ(panel_.statusOf(2000, {1}), 0u);
    panel_.send(announcementOf(314256));
    panel_.send(pattern(30720, 0));
    EXPECT_EQ(panel_.statusOf(2009, pattern(314244, 9)), 0u);
    EXPECT_EQ(panel_.ask(3009).payload, pattern(314244, 9));
}

TEST_F(Framing, RestartForgetsUnfinishedTrains) {
    SimulationSettings settings;
    settings.rebootMs = 100;
    SimulatedDevice device(settings);
    PanelSide panel(device);
    panel.send(announcementOf(314256));
    device.reboot(panel.nowMs);
    panel.nowMs = 100;
    EXPECT_EQ(panel.statusOf(4006), 0u);
}

TEST_F(Framing, TrainLongerThanAnnouncedIsDropped) {
    panel_.send(announcementOf(70000));
    EXPECT_TRUE(panel_.send(pattern(65000, 0)).empty());
    EXPECT_TRUE(panel_.send(pattern(5001, 0)).empty());
    EXPECT_EQ(panel_.statusOf(4006), 0u) << "the train is over";
}

// A lost announcement must not make the device answer the chunks behind it: the panel would take
// such an answer for the device's word and not try again.
TEST_F(Framing, ChunksWithoutAnnouncementAreIgnored) {
    const Bytes message = requestFrame(2004, Bytes(314244));
    for (std::size_t at = 0; at < message.size(); at += 30720) {
        const std::size_t end = std::min(at + 30720, message.size());
        EXPECT_TRUE(panel_
                        .send(Bytes(message.begin() + static_cast<std::ptrdiff_t>(at),
                                    message.begin() + static_cast<std::ptrdiff_t>(end)))
                        .empty())
            << at;
    }
}

TEST_F(Framing, WrongLengthsAreRefused) {
    EXPECT_EQ(readReply(panel_.send(requestFrame(4006, {}, 1))).status, 2u);
    EXPECT_EQ(readReply(panel_.send(requestFrame(4008, {2}, 0))).status, 2u);
    EXPECT_EQ(panel_.statusOf(4006, {0}), 2u);
    EXPECT_EQ(panel_.statusOf(4008), 2u);
    EXPECT_EQ(panel_.statusOf(2003, Bytes(623)), 2u);
    EXPECT_EQ(panel_.statusOf(4009, Bytes(263)), 2u);
    EXPECT_EQ(panel_.statusOf(4711), 1u) << "unknown";
    EXPECT_TRUE(panel_.ask(4711).payload.empty());
}

}  // namespace
}  // namespace korvane::test
