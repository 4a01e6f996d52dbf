#include "simulator/udp_server.h"

#include <gtest/gtest.h>

#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

std::uint64_t clockMs = 0;
std::uint64_t readClock() {
    return clockMs;
}

class Server : public testing::Test {
  protected:
    void SetUp() override {
        while (port_ < 30000 && !server_.open("127.0.0.1", port_)) ++port_;
        ASSERT_LT(port_, 30000);
        ASSERT_EQ(UdpOpen(nullptr, 0, 0, panel_), 1);
    }
    ~Server() override { UdpClose(panel_); }

    void ask(std::uint32_t code) {
        const std::uint32_t address = parseIpv4("127.0.0.1");
        const Bytes request = frameOf(code, 0);
        ASSERT_EQ(UdpSendTo(panel_, &address, port_, 1000, request.data(), 12), 12);
        server_.serve(generousMs, readClock);
    }
    std::uint32_t receive(std::uint32_t timeoutMs) {
        Bytes buffer(65536);
        std::uint32_t length = 0;
        return UdpRecvFrom(panel_, buffer.data(), buffer.size(), length, timeoutMs) ? 0 : length;
    }

    static constexpr std::uint32_t generousMs = 10'000;
    SimulatedDevice device_;
    UdpServer server_{device_};
    UdpSocket panel_ = 0;
    std::uint16_t port_ = 21123;
};

TEST_F(Server, AnswersWhoeverAskedAndKeepsTheTimesOfATrain) {
    ask(4006);
    EXPECT_EQ(receive(generousMs), 14u);
    ask(3004);
    EXPECT_EQ(receive(generousMs), 8u);
    std::uint32_t total = receive(generousMs);
    EXPECT_EQ(total, 30720u);
    for (int chunk = 2; chunk <= 11; ++chunk) {
        EXPECT_EQ(receive(0), 0u) << chunk << " is not due";
        clockMs += 50;
        server_.serve(0, readClock);
        total += receive(generousMs);
    }
    EXPECT_EQ(total, 314256u);
}

TEST_F(Server, AddressThatIsTaken) {
    EXPECT_FALSE(UdpServer(device_).open("127.0.0.1", port_));
}

}  // namespace
}  // namespace korvane::test
