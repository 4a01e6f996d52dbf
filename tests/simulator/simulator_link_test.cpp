#include "simulator/simulator_link.h"

#include <gtest/gtest.h>

#include "simulator/dialogue.h"

namespace korvane::test {
namespace {

class Link : public testing::Test {
  protected:
    Link() { link_.open(); }
    void ask(std::uint32_t code) {
        const Bytes request = frameOf(code, 0);
        EXPECT_EQ(link_.send(panelEndpoint.address, 1123, 2000, request.data(), 12), 12);
    }
    // The size of what comes, or -1.
    int receive(std::uint32_t timeoutMs, std::size_t capacity = 65536) {
        std::uint32_t received = 0;
        const int result = link_.receive(buffer_.data(), capacity, received, timeoutMs);
        return result == 0 ? static_cast<int>(received) : result;
    }

    SimulatedDevice device_;
    SimulatorLink link_{device_, 1000};
    Bytes buffer_ = Bytes(65536);
};

TEST_F(Link, WaitingMovesTheClockOnlyAsFarAsNeeded) {
    EXPECT_EQ(receive(3000), -1);
    ask(3004);
    EXPECT_EQ(receive(2000), 8);
    EXPECT_EQ(link_.ticks(), 4000u) << "the answer was there at once";
    for (int i = 0; i < 10; ++i) EXPECT_EQ(receive(2000), 30720) << i;
    EXPECT_EQ(receive(49), -1);
    EXPECT_EQ(receive(1), 7056);
    EXPECT_EQ(link_.ticks(), 4500u) << "eleven chunks, 50 ms apart";
}

TEST_F(Link, WhatIsTooLongOrOnItsWayWhenItEndsIsLost) {
    ask(4007);
    EXPECT_EQ(receive(10, 1000), -1) << "longer than the buffer";
    ask(4006);
    link_.cancel();
    EXPECT_EQ(receive(1000), -1);
    link_.sleep(1000);
    EXPECT_EQ(link_.ticks(), 1000u);
    EXPECT_FALSE(link_.isReachable("10.0.0.1"));
    link_.open();
    EXPECT_EQ(receive(10), -1);
    ask(4006);
    EXPECT_EQ(receive(10), 14);
    EXPECT_TRUE(link_.isReachable("10.0.0.1"));
}

}  // namespace
}  // namespace korvane::test
