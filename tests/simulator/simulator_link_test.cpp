#include "simulator/simulator_link.h"

#include <gtest/gtest.h>

#include "device/command_frame.h"
#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

class Link : public testing::Test {
  protected:
    Link() { link_.open(); }
    int send(const Bytes& bytes, std::uint16_t port = 1123) {
        return link_.send(panelEndpoint.address, port, 2000, bytes.data(),
                          static_cast<std::uint16_t>(bytes.size()));
    }
    int receive(std::uint32_t timeoutMs, std::size_t capacity = 65536) {
        return link_.receive(buffer_.data(), capacity, received_, timeoutMs);
    }

    SimulatedDevice device_;
    SimulatorLink link_{device_, 1000};
    Bytes buffer_ = Bytes(65536);
    std::uint32_t received_ = 0;
};

TEST_F(Link, WaitingMovesTheClockOnlyAsFarAsNeeded) {
    EXPECT_EQ(receive(3000), -1);
    EXPECT_EQ(link_.ticks(), 4000u);
    EXPECT_EQ(send(requestFrame(4006)), 12);
    EXPECT_EQ(receive(3000), 0);
    EXPECT_EQ(received_, 14u);
    EXPECT_EQ(link_.ticks(), 4000u) << "the answer was there at once";
    send(requestFrame(3004));
    for (int i = 0; i < 12; ++i) EXPECT_EQ(receive(2000), 0) << i;
    EXPECT_EQ(link_.ticks(), 4500u) << "eleven chunks, 50 ms apart";
    EXPECT_EQ(link_.datagramsSent(), 2u);
    EXPECT_EQ(link_.datagramsReceived(), 13u);
}

TEST_F(Link, LateAnswerIsThereAfterTheWait) {
    std::string error;
    device_.faults().add(*parseFault("late:1", error));
    send(requestFrame(4006));
    EXPECT_EQ(receive(3000), -1);
    EXPECT_EQ(receive(0), -1);
    link_.sleep(300);
    EXPECT_EQ(receive(0), 0) << "to be drained";
}

TEST_F(Link, DatagramsArriveInTheOrderOfTheirTimes) {
    std::string error;
    device_.faults().add(*parseFault("delay=500@4006:1", error));
    send(requestFrame(4006));
    send(requestFrame(4001 + 1000));
    ASSERT_EQ(receive(100), 0);
    EXPECT_EQ(getBigEndian32(buffer_.data()), 5001u);
    ASSERT_EQ(receive(1000), 0);
    EXPECT_EQ(getBigEndian32(buffer_.data()), 4006u);
    EXPECT_EQ(link_.ticks(), 1500u);
}

TEST_F(Link, WhatDoesNotReachTheDevice) {
    EXPECT_EQ(send(requestFrame(4006), 1124), 12);
    EXPECT_EQ(receive(10), -1);
    send(requestFrame(4007));
    EXPECT_EQ(receive(10, 1000), -1) << "longer than the buffer";
    link_.close();
    EXPECT_EQ(send(requestFrame(4006)), -1);
    EXPECT_EQ(receive(10), -1);
}

TEST_F(Link, CancelEndsEverythingUntilTheNextOpen) {
    send(requestFrame(4006));
    link_.cancel();
    const std::uint32_t before = link_.ticks();
    EXPECT_EQ(receive(1000), -1);
    EXPECT_EQ(send(requestFrame(4006)), -1);
    EXPECT_FALSE(link_.isReachable("10.0.0.1"));
    link_.sleep(1000);
    EXPECT_EQ(link_.ticks(), before);
    link_.open();
    send(requestFrame(4006));
    EXPECT_EQ(receive(1000), 0);
}

TEST_F(Link, Reachability) {
    EXPECT_TRUE(link_.isReachable("10.0.0.1"));
    link_.setReachable(false);
    EXPECT_FALSE(link_.isReachable("10.0.0.1"));
    EXPECT_EQ(link_.reachabilityChecks(), 2u);
}

}  // namespace
}  // namespace korvane::test
