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
        clockMs = 0;
        while (port_ < 30000 && !server_.open("127.0.0.1", port_)) ++port_;
        ASSERT_LT(port_, 30000);
        ASSERT_EQ(UdpOpen(nullptr, 0, 0, panel_), 1);
    }
    ~Server() override { UdpClose(panel_); }

    void send(const Bytes& bytes) {
        const std::uint32_t address = parseIpv4("127.0.0.1");
        ASSERT_EQ(UdpSendTo(panel_, &address, port_, 1000, bytes.data(),
                            static_cast<std::uint16_t>(bytes.size())),
                  static_cast<int>(bytes.size()));
    }
    Bytes receive(std::uint32_t timeoutMs) {
        Bytes buffer(65536);
        std::uint32_t length = 0;
        if (UdpRecvFrom(panel_, buffer.data(), buffer.size(), length, timeoutMs) != 0) return {};
        buffer.resize(length);
        return buffer;
    }

    static constexpr std::uint32_t generousMs = 10'000;
    SimulatedDevice device_;
    UdpServer server_{device_};
    UdpSocket panel_ = 0;
    std::uint16_t port_ = 21123;
};

TEST_F(Server, AnswersWhoeverAsked) {
    send(requestFrame(4006));
    server_.serve(generousMs, readClock);
    EXPECT_EQ(receive(generousMs).size(), 14u);
}

TEST_F(Server, KeepsTheTimesOfATrain) {
    send(requestFrame(3004));
    server_.serve(generousMs, readClock);
    EXPECT_EQ(receive(generousMs).size(), 8u);
    std::size_t total = receive(generousMs).size();
    EXPECT_EQ(total, 30720u);
    EXPECT_TRUE(receive(0).empty()) << "the second chunk is not due";
    for (int chunk = 2; chunk <= 11; ++chunk) {
        clockMs += 50;
        server_.serve(0, readClock);
        total += receive(generousMs).size();
    }
    EXPECT_EQ(total, 314256u);
}

TEST_F(Server, AddressThatIsTaken) {
    UdpServer second(device_);
    EXPECT_FALSE(second.open("127.0.0.1", port_));
}

}  // namespace
}  // namespace korvane::test
