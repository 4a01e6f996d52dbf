#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>

#include "device/command_frame.h"
#include "device/device_manager.h"
#include "simulator/simulator_link.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

// The link to a device that stays silent at one command: the wait for its answer ends only with the
// link.
class SilentAtLink : public SimulatorLink {
  public:
    SilentAtLink(SimulatedDevice& device, std::uint32_t command)
        : SimulatorLink(device, 60000), command_(command) {}

    bool open() override {
        const std::lock_guard guard(mutex_);
        cancelled_ = false;
        return SimulatorLink::open();
    }
    void cancel() override {
        {
            const std::lock_guard guard(mutex_);
            cancelled_ = true;
        }
        changed_.notify_all();
        SimulatorLink::cancel();
    }
    int send(std::uint32_t address, std::uint16_t port, std::uint32_t timeoutMs, const void* data,
             std::uint16_t length) override {
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        const std::lock_guard guard(mutex_);
        asked_ = length >= CommandFrame::size && getBigEndian32(bytes) == command_;
        ++calls_;
        return SimulatorLink::send(address, port, timeoutMs, data, length);
    }
    int receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs) override {
        std::unique_lock lock(mutex_);
        ++calls_;
        if (timeoutMs != 0 && asked_) {
            waiting_ = true;
            changed_.notify_all();
            changed_.wait(lock, [this] { return cancelled_; });
            waiting_ = false;
            return -1;
        }
        lock.unlock();
        return SimulatorLink::receive(buffer, capacity, received, timeoutMs);
    }

    void awaitWaiting() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return waiting_; });
    }
    int calls() {
        const std::lock_guard guard(mutex_);
        return calls_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::uint32_t command_;
    bool cancelled_ = false, asked_ = false, waiting_ = false;
    int calls_ = 0;
};

class PollerStop : public testing::TestWithParam<std::uint32_t> {};

TEST_P(PollerStop, InTheMiddleOfACommandLeavesNothingRunning) {
    test::ScratchDirectory scratch;
    SimulatedDevice device;
    SilentAtLink link(device, GetParam());
    DeviceManager manager(link, scratch.path());
    ASSERT_EQ(manager.Start("10.1.2.3"), 0);
    link.awaitWaiting();
    EXPECT_EQ(manager.Stop(), 0);
    const int calls = link.calls();
    StatusSummary summary{};
    auto image = std::make_unique<DeviceStatusImage>();
    EXPECT_EQ(manager.getStatusSummary(summary), -1);
    EXPECT_EQ(manager.getDeviceStatusImage(*image), -1);
    EXPECT_EQ(link.calls(), calls);

    ASSERT_EQ(manager.Start("10.1.2.3"), 0);  // the same link again, and the poller polls
    link.awaitWaiting();
    EXPECT_GT(link.calls(), calls);
    manager.Stop();
}

// Heartbeat, summary, status.
INSTANTIATE_TEST_SUITE_P(Each, PollerStop, testing::Values(4006u, 4008u, 4007u));

}  // namespace
}  // namespace korvane
