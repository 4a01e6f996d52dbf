#include "simulator/udp_server.h"

#include <gtest/gtest.h>

#include "device/udp_link.h"
#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

std::uint64_t clockMs = 0;

class Server : public testing::Test {
  protected:
    void SetUp() override {
        while (port_ < 30000 && !server_.open("127.0.0.1", port_)) ++port_;
        ASSERT_LT(port_, 30000);
        ASSERT_TRUE(panel_.open());
    }
    void ask(std::uint32_t code) {
        const Bytes request = frameOf(code, 0);
        ASSERT_EQ(panel_.send(parseIpv4("127.0.0.1"), port_, 1000, request.data(), 12), 12);
        serve(generousMs);
    }
    void serve(std::uint32_t waitMs) {
        server_.serve(waitMs, [] { return clockMs; });
    }
    std::uint32_t receive(std::uint32_t timeoutMs) {
        std::uint32_t length = 0;
        const int result = panel_.receive(buffer_.data(), buffer_.size(), length, timeoutMs);
        return result == 0 ? length : 0;
    }

    static constexpr std::uint32_t generousMs = 10'000;
    SimulatedDevice device_;
    UdpServer server_{device_};
    UdpDeviceLink panel_{[](const std::string&) { return true; }};
    Bytes buffer_ = Bytes(65536);
    std::uint16_t port_ = 21123;
};

TEST_F(Server, AnswersWhoeverAskedAndKeepsTheTimesOfATrain) {
    EXPECT_FALSE(UdpServer(device_).open("127.0.0.1", port_)) << "it is taken";
    ask(4006);
    EXPECT_EQ(receive(generousMs), 14u);
    ask(3004);
    EXPECT_EQ(receive(generousMs), 8u);
    std::uint32_t total = receive(generousMs);
    EXPECT_EQ(total, 30720u);
    for (int chunk = 2; chunk <= 11; ++chunk) {
        EXPECT_EQ(receive(0), 0u) << chunk << " is not due";
        clockMs += 50;
        serve(0);
        total += receive(generousMs);
    }
    EXPECT_EQ(total, 314256u);
}

}  // namespace
}  // namespace korvane::test
