#include "device/udp.h"

#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "device/udp_link.h"

namespace korvane {
namespace {

constexpr std::uint32_t loopback = 0x0100007F;  // 127.0.0.1 in network byte order
constexpr std::uint32_t patienceMs = 5000;

// Opens a socket on the loopback interface and returns its port: the first free one of a range.
std::uint16_t openOnLoopback(UdpSocket& socket) {
    for (std::uint16_t port = 47001; port < 47200; ++port)
        if (UdpOpen(&loopback, port, 0, socket) == 1) return port;
    return 0;
}

class Udp : public testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(portOfA_ != 0 && portOfB_ != 0); }
    void TearDown() override {
        UdpClose(a_);
        UdpClose(b_);
    }

    UdpSocket a_ = 0, b_ = 0;
    std::uint16_t portOfA_ = openOnLoopback(a_), portOfB_ = openOnLoopback(b_);
};

TEST_F(Udp, CarriesADatagramAndTellsItsSender) {
    UdpSocket third = 0;
    EXPECT_EQ(UdpOpen(&loopback, portOfB_, 0, third), 0) << "a port is not opened twice";
    EXPECT_EQ(UdpWait(b_, 0, UdpDirection::Readable), -2);
    EXPECT_EQ(UdpSendTo(a_, &loopback, portOfB_, 1000, "hello", 5), 5);
    EXPECT_EQ(UdpWait(b_, patienceMs, UdpDirection::Readable), 0);
    char buffer[16] = {};
    std::uint32_t received = 0, address = 0;
    std::uint16_t port = 0;
    EXPECT_EQ(UdpRecvFrom(b_, buffer, sizeof buffer, received, patienceMs, address, port), 0);
    EXPECT_EQ(std::string(buffer, received), "hello");
    EXPECT_EQ(address, loopback);
    EXPECT_EQ(port, portOfA_);
}

TEST_F(Udp, EmptyAndOversizedDatagramsAreNoneAndDoNotTouchWhatFollowsTheBuffer) {
    char buffer[8];
    std::memset(buffer, 'z', sizeof buffer);
    std::uint32_t received = 77;
    EXPECT_EQ(UdpRecvFrom(b_, buffer, 4, received, 0), -1);
    EXPECT_EQ(UdpSendTo(a_, &loopback, portOfB_, 1000, "", 0), 0);
    EXPECT_EQ(UdpRecvFrom(b_, buffer, 4, received, patienceMs), -1);
    EXPECT_EQ(UdpSendTo(a_, &loopback, portOfB_, 1000, "12345", 5), 5);
    EXPECT_EQ(UdpRecvFrom(b_, buffer, 4, received, patienceMs), -1);
    EXPECT_EQ(std::string(buffer + 4, 4), "zzzz");
    EXPECT_EQ(received, 77u);
}

TEST_F(Udp, ASendThatTheSystemRefusesIsAPositiveCode) {
    const std::vector<char> large(65535);  // more than an IPv4 datagram carries
    EXPECT_GT(UdpSendTo(a_, &loopback, portOfB_, 1000, large.data(), 65535), 0);
    std::uint32_t received = 0;
    char byte = 0;
    EXPECT_EQ(UdpRecvFrom(b_, &byte, 1, received, 0), -1);
}

TEST(UdpWithoutSocket, ReceivesNothingSuccessfully) {
    std::uint32_t received = 5;
    char byte = 'q';
    EXPECT_EQ(UdpRecvFrom(0, &byte, 1, received, 1000), 0);
    EXPECT_EQ(received, 5u);
    EXPECT_EQ(byte, 'q');
    EXPECT_EQ(UdpClose(0), 0);
}

TEST(UdpLink, CancellingEndsWaitsAndSleepsOfOtherThreads) {
    UdpDeviceLink link([](const std::string&) { return true; });
    ASSERT_TRUE(link.open());
    constexpr std::uint32_t anHour = 3600 * 1000;
    std::thread sleeper([&link] { link.sleep(anHour); });
    std::thread receiver([&link] {
        char byte = 0;
        std::uint32_t received = 0;
        EXPECT_EQ(link.receive(&byte, 1, received, anHour), -1);
    });
    link.cancel();
    sleeper.join();
    receiver.join();
    EXPECT_FALSE(link.isReachable("127.0.0.1"));
    char byte = 0;
    EXPECT_EQ(link.send(loopback, 9, 0, &byte, 1), -1);
    ASSERT_TRUE(link.open());
    EXPECT_TRUE(link.isReachable("127.0.0.1"));
}

// Nothing comes: each wait takes as long as it was told, or a little more.
TEST(UdpLink, WaitsAsLongAsItIsTold) {
    UdpDeviceLink link([](const std::string&) { return true; });
    ASSERT_TRUE(link.open());
    UdpSocket socket = 0;
    ASSERT_NE(openOnLoopback(socket), 0);
    char byte = 0;
    std::uint32_t received = 0;
    const std::pair<std::uint32_t, std::function<void()>> waits[] = {
        {30, [&] { EXPECT_EQ(link.receive(&byte, 1, received, 30), -1); }},
        {120, [&] { EXPECT_EQ(link.receive(&byte, 1, received, 120), -1); }},
        {40, [&] { EXPECT_EQ(UdpWait(socket, 40, UdpDirection::Readable), -2); }},
        {30, [&] { link.sleep(30); }},
    };
    for (const auto& [milliseconds, wait] : waits) {
        const std::uint32_t start = link.ticks();
        wait();
        // Clocks differ by up to a tick of the system's.
        EXPECT_GE(link.ticks() - start + 16, milliseconds);
    }
    UdpClose(socket);
}

TEST(ParseIpv4, TakesDottedTextsOnly) {
    EXPECT_EQ(parseIpv4("127.0.0.1"), loopback);
    EXPECT_EQ(parseIpv4("multiplexer"), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace korvane
