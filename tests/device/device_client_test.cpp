#include "device/device_client.h"

#include <climits>
#include <cstring>
#include <gtest/gtest.h>

#include "device/udp.h"
#include "support/bytes.h"
#include "support/scripted_link.h"

namespace korvane {
namespace {

using test::announcementOf;
using test::Bytes;
using test::frameOf;

std::string hex(const Bytes& bytes) {
    return test::bytesAt(*bytes.data(), 0, bytes.size());
}

class Client : public testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(client_.Start("10.1.2.3"), 0); }

    int reboot() { return client_.Exchange(4001, {}, {}); }
    // A train of `total` bytes that begins with `frame`, announced, in pieces of 30,720 bytes.
    void answersWithTrain(Bytes frame) {
        link_.answers(announcementOf(static_cast<std::uint32_t>(frame.size())));
        for (std::size_t offset = 0; offset < frame.size(); offset += 30720)
            link_.answers(Bytes(frame.begin() + offset,
                                frame.begin() + std::min(offset + 30720, frame.size())));
    }

    test::ScriptedLink link_;
    DeviceClient client_{link_};
};

TEST_F(Client, SendsOneFrameToTheDevicesPort) {
    link_.answers(frameOf(2000, 0));
    const std::uint8_t transferByte = 0x5A;
    EXPECT_EQ(client_.Exchange(2000, {&transferByte, 1}, {}), 0);
    ASSERT_EQ(link_.sent.size(), 1u);
    EXPECT_EQ(hex(link_.sent[0].bytes), "00 00 07 D0 00 00 00 00 00 00 00 01 5A");
    EXPECT_EQ(link_.sent[0].port, 1123);
    EXPECT_EQ(link_.sent[0].timeoutMs, 1000u);
    EXPECT_EQ(link_.sent[0].address, parseIpv4("10.1.2.3"));
    EXPECT_EQ(link_.receiveTimeouts, std::vector<std::uint32_t>{3000});
}

TEST_F(Client, StaleAnswersAreThrownAwayBeforeTheRequestLeaves) {
    link_.hasStale(frameOf(4001, 9));
    link_.hasStale(frameOf(4001, 8));
    link_.answers(frameOf(4001, 0));
    EXPECT_EQ(reboot(), 0);
    EXPECT_EQ(link_.log, "drain drain send ");
}

TEST_F(Client, AsksAllTheSameWhileAPeerNeverStopsSending) {
    int drained = 0;
    link_.before = [&](std::string_view call, std::uint32_t) {
        if (call == "drain" && ++drained < 1'000'000) link_.hasStale({1});
    };
    link_.answers(frameOf(4001, 0));
    EXPECT_EQ(reboot(), 0);
    EXPECT_LT(drained, 10000);
}

TEST(ClientOfASilentDevice, TriesAsOftenAsItMayButAsksForAnEchoOnce) {
    const struct {
        std::uint32_t attempts;
        bool reachable;
        int silences, result;
        const char* log;
    } cases[] = {
        {2, true, 1, 0, "send ping sleep300 send "},
        {2, true, 2, -2, "send ping sleep300 send "},
        {3, true, 3, -2, "send ping sleep300 send sleep300 send "},
        {2, false, 2, -8, "send ping "},
        {1, true, 1, -2, "send "},
    };
    for (const auto& [attempts, reachable, silences, result, log] : cases) {
        test::ScriptedLink link;
        DeviceClient client(link);
        client.Start("10.1.2.3");
        client.attempts = attempts;
        link.reachable = reachable;
        for (int i = 0; i < silences; ++i) link.staysSilent();
        link.answers(frameOf(4001, 0));
        EXPECT_EQ(client.RebootDevice(), result);
        EXPECT_EQ(link.log, log);
        for (const std::string& host : link.pinged) EXPECT_EQ(host, "10.1.2.3");
    }
}

TEST_F(Client, ASocketThatIsNotWritableFailsButARefusedSendCountsAsSent) {
    client_.attempts = 1;
    link_.sendResult = -1;
    EXPECT_EQ(reboot(), -1);
    EXPECT_EQ(client_.Exchange(4011, Bytes(65537), {}), -1);
    EXPECT_EQ(link_.sent.size(), 2u) << "no train follows an announcement that did not leave";
    link_.sendResult = 10054;
    link_.answers(frameOf(4001, 0));
    EXPECT_EQ(reboot(), 0);
}

TEST_F(Client, BeforeStartAndAfterStopEveryExchangeFails) {
    test::ScriptedLink link;
    DeviceClient client(link);
    EXPECT_EQ(client.Exchange(4001, {}, {}), -1);
    link.openWorks = false;
    EXPECT_EQ(client.Start("10.1.2.3"), -4);
    EXPECT_EQ(client_.Stop(), 0);
    EXPECT_TRUE(link_.closed);
    EXPECT_EQ(reboot(), -1);
    EXPECT_TRUE(link_.sent.empty());
}

TEST_F(Client, UnknownCodesGoOutEmptyAndComeBackUnchecked) {
    link_.answers(frameOf(4005, 77, Bytes(33)));
    const std::uint8_t byte = 1;
    EXPECT_EQ(client_.Exchange(4005, {&byte, 1}, {}), 77);
    EXPECT_EQ(link_.sent[0].bytes.size(), 12u);
}

// One answer to one request, and what must come of it.
struct AnswerCase {
    const char* what;
    std::uint32_t code;
    Bytes answer;
    int result;
};

class Answers : public Client, public testing::WithParamInterface<AnswerCase> {};

TEST_P(Answers, AreJudged) {
    client_.attempts = 1;
    link_.answers(GetParam().answer);
    Bytes response(8192, 0xEE);
    EXPECT_EQ(client_.Exchange(GetParam().code, {}, response), GetParam().result);
    if (GetParam().result != 0) {
        EXPECT_EQ(response, Bytes(8192, 0xEE)) << "a failure must copy nothing";
    }
}

Bytes cutTo(Bytes bytes, std::size_t size) {
    bytes.resize(size);
    return bytes;
}

Bytes recordList(std::uint8_t count, std::size_t payloadSize) {
    Bytes payload(payloadSize);
    if (!payload.empty()) payload[0] = count;
    return payload;
}

INSTANTIATE_TEST_SUITE_P(
    Client, Answers,
    testing::Values(
        AnswerCase{"bare header", 4000, frameOf(4000, 0), 0},
        AnswerCase{"status word", 4000, frameOf(4000, 17), 17},
        AnswerCase{"payload nobody asked for", 4000, frameOf(4000, 0, Bytes(5)), 0},
        AnswerCase{"status that reads as -8", 4000, frameOf(4000, 0xFFFFFFF8), INT_MAX},
        AnswerCase{"status 0x80000000", 4000, frameOf(4000, 0x80000000), INT_MAX},
        AnswerCase{"another command", 4000, frameOf(4001, 0), -1},
        AnswerCase{"half a header", 4000, cutTo(frameOf(4000, 0), 7), -1},
        AnswerCase{"one byte", 4000, Bytes{0x11}, -1},
        AnswerCase{"announcement of nothing", 4000, announcementOf(0), -1},
        AnswerCase{"cut announcement", 4000, Bytes{0x11, 0x22, 0, 0}, -1},
        AnswerCase{"exact size", 101, frameOf(101, 0, Bytes(144)), 0},
        AnswerCase{"exact size with status", 101, frameOf(101, 5, Bytes(144)), 5},
        AnswerCase{"refusal without payload", 101, frameOf(101, 5), -3},
        AnswerCase{"one byte short", 101, frameOf(101, 0, Bytes(143)), -3},
        AnswerCase{"one byte long", 101, frameOf(101, 0, Bytes(145)), -3},
        AnswerCase{"less than the header says", 101, cutTo(frameOf(101, 0, Bytes(144)), 60), -3},
        AnswerCase{"header answer refused", 3001, frameOf(3001, 6), 6},
        AnswerCase{"header answer too short", 3001, frameOf(3001, 0, Bytes(12)), -3},
        AnswerCase{"block 2002 refused", 3002, frameOf(3002, 7, Bytes(1)), 7},
        AnswerCase{"no channel", 2, frameOf(2, 0, recordList(0, 1)), 0},
        AnswerCase{"two channels", 2, frameOf(2, 0, recordList(2, 241)), 0},
        AnswerCase{"61 channels", 2, frameOf(2, 0, recordList(61, 1 + 61 * 120)), 0},
        AnswerCase{"channels refused", 2, frameOf(2, 3), 3},
        AnswerCase{"no count byte", 2, frameOf(2, 0), -1},
        AnswerCase{"half a record", 2, frameOf(2, 0, recordList(1, 61)), -1},
        AnswerCase{"more counted than sent", 2, frameOf(2, 0, recordList(3, 241)), -1},
        AnswerCase{"cut record list", 2, cutTo(frameOf(2, 0, recordList(2, 241)), 200), -1}),
    [](const auto& one) { return test::testName(one.param.what); });

TEST_F(Client, TheChannelListIsCutToWhatThePanelKeeps) {
    Bytes payload = recordList(61, 1 + 61 * 120);
    payload[1 + 59 * 120 + 12] = 7;
    link_.answers(frameOf(2, 0, payload));
    FlatChannelList channels;
    EXPECT_EQ(client_.GetInputChannels(channels), 0);
    ASSERT_EQ(channels.size(), 60u);
    EXPECT_EQ(channels.back().type, 7);
}

// 65,536 do not fit the 16 bits that a datagram's length has here.
TEST_F(Client, RequestsUpTo65536BytesGoAsOneDatagramLongerOnesAsATrain) {
    const std::tuple<std::size_t, std::vector<std::size_t>, const char*> cases[] = {
        {65535, {65535}, "send "},
        {65536, {0}, "send "},
        {65537, {8, 30720, 30720, 4097}, "send send sleep50 send sleep50 send sleep50 "}};
    for (const auto& [size, sizes, log] : cases) {
        link_ = test::ScriptedLink();
        link_.answers(frameOf(4011, 0));
        EXPECT_EQ(client_.Exchange(4011, Bytes(size - 12), {}), 0);
        std::vector<std::size_t> sent;
        for (const auto& one : link_.sent) sent.push_back(one.bytes.size());
        EXPECT_EQ(sent, sizes);
        EXPECT_EQ(link_.log, log);
    }
    EXPECT_EQ(hex(link_.sent[0].bytes), "11 22 00 00 00 01 00 01");
    EXPECT_EQ(link_.sent[0].timeoutMs, 2000u);
}

TEST_F(Client, ALongAnswerIsPutTogether) {
    Bytes payload(314244);
    for (std::size_t i = 0; i < payload.size(); ++i)
        payload[i] = static_cast<std::uint8_t>(i / 251);
    answersWithTrain(frameOf(3004, 0, payload));
    auto image = std::make_unique<ConfigImage>();
    EXPECT_EQ(client_.GetImageBlockA(*image), 0);
    EXPECT_EQ(std::memcmp(&image->continuous, payload.data(), payload.size()), 0);
    EXPECT_EQ(image->header.bytes[0], 0);
    EXPECT_EQ(image->shortTime.header[0], 0);
    EXPECT_EQ(link_.receiveTimeouts.front(), 3000u);
    EXPECT_EQ(link_.receiveTimeouts.back(), 2000u);
}

// Of a train, the last datagram may fill the buffer; then it is whole, but no answer to this.
TEST_F(Client, WhatWouldNotFitTheBufferIsNoAnswer) {
    client_.attempts = 1;
    for (const auto& [total, last, result] : {std::tuple{409601u, 0u, -2},
                                              {0xFFFFFFFF, 0, -2},
                                              {409600, 16385, -2},
                                              {409600, 16384, -1}}) {
        link_.answers(announcementOf(total));
        for (int i = 0; i < 6 && last != 0; ++i) link_.answers(Bytes(65536));
        if (last != 0) link_.answers(Bytes(last));
        EXPECT_EQ(reboot(), result) << last;
    }
}

// Datagrams that a fault of the network brings twice shift what is behind them.
TEST_F(Client, AnAnswerOfMoreThanWasAnnouncedIsDamagedAndAskedForAgain) {
    constexpr std::size_t pieceSize = 30720;
    Bytes frame = frameOf(3004, 0, Bytes(314244, 0x5A));
    frame[CommandFrame::size + 200000] = 0xA5;
    for (const std::size_t doubled : {0u, 5u, 9u}) {
        link_.answers(announcementOf(static_cast<std::uint32_t>(frame.size())));
        // The last one, a shorter piece, stays in the socket: it was never waited for.
        for (std::size_t piece = 0; piece < frame.size() / pieceSize; ++piece)
            for (int times = piece == doubled ? 2 : 1; times > 0; --times)
                link_.answers(Bytes(frame.begin() + piece * pieceSize,
                                    frame.begin() + (piece + 1) * pieceSize));
        answersWithTrain(frame);
        auto image = std::make_unique<ConfigImage>();
        EXPECT_EQ(client_.GetImageBlockA(*image), 0);
        EXPECT_EQ(reinterpret_cast<std::uint8_t*>(&image->continuous)[200000], 0xA5) << doubled;
        EXPECT_EQ(link_.pinged.size(), 1u) << "the first answer counts for nothing";
        EXPECT_TRUE(link_.scriptPlayed());
        link_.pinged.clear();
    }
}

// Each datagram comes just in time, the whole answer never would.
TEST_F(Client, GivesADripUpAfterHalfAMinute) {
    client_.attempts = 1;
    link_.before = [this](std::string_view call, std::uint32_t ms) {
        if (call == "receive") link_.now += std::min(ms, 1999u) + 3;  // waits are not exact
    };
    link_.answers(announcementOf(409600));
    for (int i = 0; i < 1000; ++i) link_.answers(Bytes(1));
    link_.now = 0xFFFFF000;  // the clock wraps meanwhile
    EXPECT_EQ(reboot(), -2);
    EXPECT_EQ(link_.now - 0xFFFFF000, 2002u + 30003u);
}

TEST_F(Client, StatusCommandsTryOnceWithShortTimeoutsAndPutTheDefaultsBack) {
    std::uint16_t heartbeat = 7;
    auto image = std::make_unique<DeviceStatusImage>();
    StatusSummary summary{};
    EXPECT_EQ(client_.GetHeartbeat(heartbeat), -2);
    EXPECT_EQ(heartbeat, 7);
    EXPECT_EQ(client_.GetDeviceStatus(*image), -2);
    EXPECT_EQ(client_.GetStatusSummary(2, summary), -2);
    EXPECT_EQ(link_.receiveTimeouts, (std::vector<std::uint32_t>{500, 1000, 500}));
    EXPECT_EQ(link_.log, "send send send ");
    EXPECT_EQ(hex(link_.sent[2].bytes), "00 00 0F A8 00 00 00 00 00 00 00 01 02");
    link_.receiveTimeouts.clear();
    EXPECT_EQ(reboot(), -2);
    EXPECT_EQ(link_.receiveTimeouts, (std::vector<std::uint32_t>{3000, 3000}));
    link_.answers(frameOf(4006, 0, {0x12, 0x34}));
    EXPECT_EQ(client_.GetHeartbeat(heartbeat), 0);
    EXPECT_EQ(heartbeat, 0x1234);

    client_.SetTimeout(700, DeviceClient::Timeout::Receive);
    client_.attempts = 1;
    link_.receiveTimeouts.clear();
    EXPECT_EQ(reboot(), -2);
    EXPECT_EQ(link_.receiveTimeouts, std::vector<std::uint32_t>{700});
}

TEST_F(Client, PayloadsOfTheCommandsWithALayoutOfTheirOwn) {
    auto image = std::make_unique<ConfigImage>();
    image->header.bytes = {0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6, 0xA7};
    image->header.value = 0x2211;
    image->header.bytes10 = {0xAA, 0xAB};
    image->header.length = 0x0C;
    link_.answers(frameOf(2001, 0));
    EXPECT_EQ(client_.SetImageHeader(*image), 0);
    EXPECT_EQ(hex(link_.sent.back().bytes),
              "00 00 07 D1 00 00 00 00 00 00 00 0D 0C A0 A1 A2 A3 A4 A5 A6 A7 11 22 AA AB");

    link_.answers(frameOf(3001, 0, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13}));
    EXPECT_EQ(client_.GetImageHeader(*image), 0);
    EXPECT_EQ(test::bytesAt(*image, 0, 14), "02 03 04 05 06 07 08 09 0A 0B 0C 0D 01 00");

    link_.answers(frameOf(4009, 0));
    EXPECT_EQ(client_.BeginUpgrade("vxWorks", 0x01020304, 0xA1B2C3D4), 0);
    const Bytes& begin = link_.sent.back().bytes;
    ASSERT_EQ(begin.size(), 12u + 264u);
    EXPECT_EQ(test::bytesAt(begin[12], 0, 9), "76 78 57 6F 72 6B 73 00 00");
    EXPECT_EQ(test::bytesAt(begin[12], 254, 10), "00 00 01 02 03 04 A1 B2 C3 D4");
    link_.answers(frameOf(4009, 0));
    EXPECT_EQ(client_.BeginUpgrade(std::string(300, 'n'), 0, 0), 0);
    EXPECT_EQ(test::bytesAt(link_.sent.back().bytes[12], 254, 3), "6E 00 00");

    link_.answers(frameOf(4011, 0));
    const Bytes piece = {0xDE, 0xAD};
    EXPECT_EQ(client_.UpgradeData(0x2800, piece), 0);
    EXPECT_EQ(hex(link_.sent.back().bytes),
              "00 00 0F AB 00 00 00 00 00 00 00 0A 00 00 28 00 00 00 00 02 DE AD");
}

}  // namespace
}  // namespace korvane
