#include "device/device_manager.h"

#include <atomic>
#include <condition_variable>
#include <fstream>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

#include "device/udp_link.h"
#include "simulator/simulated_device.h"
#include "simulator/simulator_link.h"
#include "support/configurations.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

// A sink on which a test waits for the outcome.
class WaitingSink : public ProgressSink {
  public:
    void progress(int percent) override {
        if (percent == 100) tell(0);
    }
    void failed(int code) override { tell(code); }

    int outcome() {
        std::unique_lock lock(mutex_);
        told_.wait(lock, [this] { return count_ > 0; });
        return code_;
    }
    int timesTold() {
        const std::lock_guard guard(mutex_);
        return count_;
    }

  private:
    void tell(int code) {
        const std::lock_guard guard(mutex_);
        code_ = code;
        ++count_;
        told_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable told_;
    int code_ = 0, count_ = 0;
};

// A link whose peer never answers and whose waits end only by cancel(), as those of a real one do.
class HangingLink : public DeviceLink {
  public:
    bool open() override {
        const std::lock_guard guard(mutex_);
        cancelled_ = false;
        ++opened;
        return openWorks;
    }
    void close() override { ++closed; }
    void cancel() override {
        const std::lock_guard guard(mutex_);
        cancelled_ = true;
        changed_.notify_all();
    }
    int send(std::uint32_t, std::uint16_t, std::uint32_t, const void*, std::uint16_t n) override {
        return n;
    }
    int receive(void*, std::size_t, std::uint32_t&, std::uint32_t timeoutMs) override {
        std::unique_lock lock(mutex_);
        if (timeoutMs == 0) return -1;
        ++waiting_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return cancelled_; });
        --waiting_;
        return -1;
    }
    bool isReachable(const std::string&) override { return false; }
    void sleep(std::uint32_t) override {}
    std::uint32_t ticks() override { return 1; }

    void awaitReceive() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return waiting_ > 0; });
    }

    bool openWorks = true;
    int opened = 0, closed = 0;

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    bool cancelled_ = false;
    int waiting_ = 0;
};

class Manager : public testing::Test {
  protected:
    test::ScratchDirectory scratch_;
    SimulatedDevice device_;
    SimulatorLink link_{device_, 60000};
    DeviceManager manager_{link_, scratch_.path()};
    std::shared_ptr<WaitingSink> sink_ = std::make_shared<WaitingSink>();
};

TEST_F(Manager, StartLoadsTheDevicesCacheAndStopEmptiesTheModel) {
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    EXPECT_TRUE(manager_.model().flatChannels().empty());
    ASSERT_EQ(manager_.startUpload(sink_), 0);
    ASSERT_EQ(sink_->outcome(), 0);
    const std::size_t channels = manager_.model().flatChannels().size();
    ASSERT_GT(channels, 0u);
    ASSERT_EQ(manager_.model().saveCacheFile(), 0);

    EXPECT_EQ(manager_.Stop(), 0);
    EXPECT_TRUE(manager_.model().flatChannels().empty());
    EXPECT_TRUE(manager_.model().tables() == *std::make_unique<ConfigTables>());
    StatusSummary summary{};
    EXPECT_EQ(manager_.getStatusSummary(summary), -1);

    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    EXPECT_EQ(manager_.model().flatChannels().size(), channels);
    ASSERT_EQ(manager_.Start("10.1.2.4"), 0);  // without a Stop: another device, not cached
    EXPECT_TRUE(manager_.model().flatChannels().empty());
    EXPECT_EQ(manager_.Stop(), 0);
    EXPECT_EQ(manager_.Stop(), 0);
}

TEST_F(Manager, ThePollerFillsTheStatusThatTheViewsCopy) {
    std::vector<bool> bits;
    EXPECT_EQ(manager_.getAlarmBits(bits), -1);
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    auto image = std::make_unique<DeviceStatusImage>();
    while (manager_.getDeviceStatusImage(*image) != 0) std::this_thread::yield();
    EXPECT_GT(image->frameCount, 0);
    StatusSummary summary{};
    EXPECT_EQ(manager_.getStatusSummary(summary), 0);
    EXPECT_EQ(manager_.getAlarmBits(bits), 0);
    EXPECT_EQ(bits.size(), 8u);
}

TEST(ManagerWithoutSocket, StartFailsAndNothingRuns) {
    test::ScratchDirectory scratch;
    HangingLink link;
    link.openWorks = false;
    DeviceManager manager(link, scratch.path());
    EXPECT_EQ(manager.Start("10.1.2.3"), -1);
    auto sink = std::make_shared<WaitingSink>();
    ASSERT_EQ(manager.startDownload(sink), 0);
    EXPECT_EQ(sink->outcome(), -1);
}

TEST(ManagerWithSilentDevice, StopEndsAPollAndASaveUnderWay) {
    test::ScratchDirectory scratch;
    HangingLink link;
    auto sink = std::make_shared<WaitingSink>();
    {
        DeviceManager manager(link, scratch.path());
        ASSERT_EQ(manager.Start("10.1.2.3"), 0);
        link.awaitReceive();
        ASSERT_EQ(manager.startDownload(sink), 0);
        EXPECT_EQ(manager.startUpload(std::make_shared<WaitingSink>()), -1);
        manager.Stop();
        EXPECT_EQ(sink->timesTold(), 1);
        EXPECT_LT(sink->outcome(), 0);
        EXPECT_EQ(manager.client().RebootDevice(), -1);
    }
    EXPECT_EQ(sink->timesTold(), 1);
}

// A poller that hangs in the system while it holds the client's lock, until it is ended by force.
class StuckLink : public HangingLink {
  public:
    int receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs) override {
        if (timeoutMs == 0 || stuck.exchange(true))
            return HangingLink::receive(buffer, capacity, received, timeoutMs);
        while (!released) std::this_thread::yield();
        return -1;
    }
    std::atomic<bool> stuck{false}, released{false};
};

TEST(ManagerWithHangingPoller, StopEndsItByForceAndTheNextStartWorks) {
    test::ScratchDirectory scratch;
    StuckLink link;
    static int forced;
    static std::thread abandoned;
    forced = 0;
    DeviceManager manager(link, scratch.path(), [](std::thread& thread) {
        ++forced;
        abandoned = std::move(thread);  // as good as dead: it holds what it held
    });
    ASSERT_EQ(manager.Start("10.1.2.3"), 0);
    while (!link.stuck) std::this_thread::yield();
    // A transfer waits for the link that the poller holds.
    auto sink = std::make_shared<WaitingSink>();
    ASSERT_EQ(manager.startUpload(sink), 0);
    EXPECT_EQ(manager.Stop(), 0);
    EXPECT_EQ(forced, 1);
    EXPECT_EQ(sink->timesTold(), 1);
    EXPECT_NE(sink->outcome(), 0);
    EXPECT_EQ(manager.Start("10.1.2.3"), 0);
    EXPECT_EQ(manager.Stop(), 0);
    EXPECT_EQ(forced, 1);
    link.released = true;
    abandoned.join();
}

// The link over real sockets, and a save that Stop cuts off: nothing may be left that still uses
// the closed socket. Under the thread sanitizer this is also the test of every shared flag.
TEST(ManagerOverUdp, RepeatedStartsAndStopsLeaveNothingBehind) {
    test::ScratchDirectory scratch;
    UdpDeviceLink link([](const std::string&) { return false; });
    DeviceManager manager(link, scratch.path());
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(manager.Start("127.0.0.1"), 0);
        auto sink = std::make_shared<WaitingSink>();
        ASSERT_EQ(manager.startUpload(sink), 0);
        manager.Stop();
        EXPECT_NE(sink->outcome(), 0);
    }
}

}  // namespace
}  // namespace korvane
