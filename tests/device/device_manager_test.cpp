#include "device/device_manager.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <gtest/gtest.h>
#include <mutex>
#include <thread>
#include <vector>

#include "device/command_frame.h"
#include "device/udp_link.h"
#include "simulator/simulator_link.h"
#include "support/recorded_log.h"
#include "support/recording_sink.h"
#include "support/scratch_directory.h"
#include "support/scripted_link.h"

namespace korvane {
namespace {

using test::RecordingSink;

std::shared_ptr<RecordingSink> newSink() {
    return std::make_shared<RecordingSink>();
}

constexpr std::uint32_t anyCommand = 0;

// The link to a device that stays silent at one command, or at all: the wait for its answer ends
// only with the link, as a real wait of hours would.
class SilentAtLink : public SimulatorLink {
  public:
    SilentAtLink(SimulatedDevice& device, std::uint32_t command)
        : SimulatorLink(device, 60000), silentAt(command) {}

    bool open() override {
        const std::lock_guard guard(mutex_);
        cancelled_ = false;
        return openWorks && SimulatorLink::open();
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
        ++calls;
        const auto* bytes = static_cast<const std::uint8_t*>(data);
        const std::uint32_t wanted = silentAt;
        asked_ = wanted == anyCommand || getBigEndian32(bytes) == wanted;
        return SimulatorLink::send(address, port, timeoutMs, data, length);
    }
    int receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs) override {
        ++calls;
        if (timeoutMs != 0 && fails()) return -1;
        if (timeoutMs == 0 || !asked_)
            return SimulatorLink::receive(buffer, capacity, received, timeoutMs);
        std::unique_lock lock(mutex_);
        waiting_ = true;
        changed_.notify_all();
        changed_.wait(lock, [this] { return cancelled_; });
        waiting_ = false;
        return -1;
    }

    bool isReachable(const std::string& host) override {
        return pings ? pings() : SimulatorLink::isReachable(host);
    }

    void awaitWaiting() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return waiting_; });
    }

    std::atomic<std::uint32_t> silentAt;
    std::function<bool()> fails = [] { return false; };  // a wait for an answer, at once
    std::function<bool()> pings;
    std::atomic<int> calls{0};
    bool openWorks = true;

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::atomic<bool> asked_{false};
    bool cancelled_ = false, waiting_ = false;
};

class Manager : public testing::Test {
  protected:
    void awaitStatus() {
        while (manager_.getDeviceStatusImage(*image_) != 0) std::this_thread::yield();
    }
    void expectNoStatus() {
        StatusSummary summary{};
        EXPECT_EQ(manager_.getStatusSummary(summary), -1);
        EXPECT_EQ(manager_.getDeviceStatusImage(*image_), -1);
    }

    static constexpr std::uint32_t noCommand = 99999;

    test::ScratchDirectory scratch_;
    SimulatedDevice device_;
    SilentAtLink link_{device_, noCommand};
    DeviceManager manager_{link_, scratch_.path()};
    std::shared_ptr<RecordingSink> sink_ = newSink();
    std::unique_ptr<DeviceStatusImage> image_ = std::make_unique<DeviceStatusImage>();
};

// What the manager's own doings mean for what is kept.
TEST_F(Manager, EditsAreKeptUntilTheDeviceHasThem) {
    using Notice = KeptWork::Notice;
    std::string error;
    device_.faults().add(*parseFault("refuse@ActivateConfig:1", error));  // before any thread
    const auto transfer = [this](auto start) {
        const auto sink = newSink();
        EXPECT_EQ((manager_.*start)(sink), 0);
        return sink->outcome();
    };
    const auto edit = [this](std::uint16_t networkNumber) {
        NetworkInfo network = manager_.model().tables().network;
        network.networkNumber = networkNumber;
        manager_.model().setNetworkInfo(network);
    };
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    EXPECT_EQ(transfer(&DeviceManager::startUpload), 0);
    EXPECT_EQ(manager_.tendWork(), Notice::None);
    edit(1);
    EXPECT_EQ(manager_.tendWork(), Notice::Edited);
    ASSERT_EQ(manager_.Start("10.1.2.4"), 0) << "another device, without a stop";
    EXPECT_EQ(manager_.tendWork(), Notice::None);
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    EXPECT_EQ(manager_.tendWork(), Notice::FromLastTime);
    manager_.work().recover(0);
    EXPECT_EQ(manager_.model().tables().network.networkNumber, 1);
    EXPECT_NE(transfer(&DeviceManager::startDownload), 0);
    EXPECT_EQ(manager_.tendWork(), Notice::Edited);
    EXPECT_EQ(transfer(&DeviceManager::startDownload), 0);
    EXPECT_EQ(manager_.tendWork(), Notice::None);
    edit(2);
    manager_.Stop();
    EXPECT_TRUE(exists(scratch_.path() / "10.1.2.3.unsaved.dat"));
    EXPECT_EQ(manager_.tendWork(), Notice::None);
}

TEST_F(Manager, TheStatusAgesUntilTheNextOne) {
    EXPECT_EQ(manager_.statusAgeMs(), 0u) << "not started";
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    awaitStatus();
    link_.sleep(60'000);
    while (manager_.statusAgeMs() > 5000) std::this_thread::yield();
    link_.silentAt = anyCommand;
    link_.awaitWaiting();
    const std::uint32_t before = manager_.statusAgeMs();
    link_.sleep(7000);
    EXPECT_EQ(manager_.statusAgeMs(), before + 7000);
}

TEST_F(Manager, StartLoadsTheDevicesCacheAndStopEmptiesTheModel) {
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    ASSERT_EQ(manager_.startUpload(sink_), 0);
    ASSERT_EQ(sink_->outcome(), 0);
    const std::size_t channels = manager_.model().flatChannels().size();
    ASSERT_GT(channels, 0u);
    ASSERT_EQ(manager_.model().saveCacheFile(), 0);

    EXPECT_EQ(manager_.Stop(), 0);
    EXPECT_TRUE(manager_.model().flatChannels().empty());
    EXPECT_TRUE(manager_.model().tables() == *std::make_unique<ConfigTables>());

    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    EXPECT_EQ(manager_.model().flatChannels().size(), channels);
    ASSERT_EQ(manager_.Start("10.1.2.4"), 0);  // without a Stop: another device, not cached
    EXPECT_TRUE(manager_.model().flatChannels().empty());
    EXPECT_EQ(manager_.deviceAddress(), "10.1.2.4");
    EXPECT_EQ(manager_.Stop() + manager_.Stop(), 0);
}

TEST_F(Manager, ThePollerFillsTheStatusUntilAnotherStart) {
    std::vector<bool> bits;
    EXPECT_EQ(manager_.getAlarmBits(bits), -1);
    expectNoStatus();
    device_.status().forceAlarms(0x19);
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    awaitStatus();
    EXPECT_GT(image_->frameCount, 0);
    StatusSummary summary{};
    EXPECT_EQ(manager_.getStatusSummary(summary), 0);
    EXPECT_EQ(summary.year, 2009);
    EXPECT_EQ(manager_.getAlarmBits(bits), 0);
    EXPECT_EQ(bits, (std::vector<bool>{true, false, false, true, true, false, false, false}));

    link_.silentAt = anyCommand;
    ASSERT_EQ(manager_.Start("10.1.2.4"), 0);
    expectNoStatus();  // the first device's would pass for the second's
}

// The poller waits for the answer to each of its commands in turn.
TEST_F(Manager, StopInTheMiddleOfAPollLeavesNothingRunning) {
    for (const std::uint32_t command : {4006u, 4008u, 4007u}) {
        link_.silentAt = command;
        ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
        link_.awaitWaiting();
        EXPECT_EQ(manager_.Stop(), 0);
        const int calls = link_.calls;
        expectNoStatus();
        EXPECT_EQ(link_.calls, calls);
    }
}

TEST_F(Manager, TheLogTellsOfStartStopAndTheCache) {
    test::RecordedLog log;
    manager_.model().setDeviceKey("10.1.2.3");
    ASSERT_EQ(manager_.model().saveCacheFile(), 0);
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    manager_.Stop();
    manager_.Stop();
    std::filesystem::resize_file(scratch_.path() / "10.1.2.3.dat", 3);
    manager_.Start("10.1.2.3");
    link_.openWorks = false;
    ASSERT_EQ(manager_.model().addChannel({}, ConfigModel::atEnd), 0);
    EXPECT_EQ(manager_.Start("10.9.9.9"), -1);
    EXPECT_TRUE(manager_.model().flatChannels().empty()) << "that was another device's";
    ASSERT_EQ(manager_.startDownload(sink_), 0);
    EXPECT_EQ(sink_->outcome(), -1) << "without a socket";
    manager_.Stop();
    for (const auto& [text, times] : {std::pair{"0 启动, 设备10.1.2.3", 2},
                                      {"0 停止, 设备10.1.2.3", 1},
                                      {"0 已读取配置缓存", 1},
                                      {"1 配置缓存文件未被采用, 结果-3", 1},
                                      {"2 启动失败, 设备10.9.9.9", 1},
                                      {"停止", 1}})
        EXPECT_EQ(log.count(text), times) << text;
}

// A save keeps the link busy, and the device takes its time to make it take effect.
TEST(ManagerNews, AreNoneDuringASaveAndTenSecondsAfterIt) {
    test::ScriptedLink link;
    const test::ScratchDirectory scratch;
    DeviceManager manager(link, scratch.path());
    const auto news = [&manager] {
        std::vector<bool> none;
        return manager.getAlarmBits(none);
    };
    int newsMeanwhile = 0;
    link.before = [&](std::string_view call, std::uint32_t) {
        if (call == "ping") newsMeanwhile = news();
    };
    const auto run = [&](auto start) {
        const auto sink = newSink();
        ASSERT_EQ((manager.*start)(sink), 0);
        EXPECT_EQ(sink->outcome(), -2);
    };
    ASSERT_EQ(manager.client().Start("10.1.2.3"), 0);
    run(&DeviceManager::startUpload);
    EXPECT_EQ(newsMeanwhile, -1);
    EXPECT_EQ(news(), -1);
    link.now = 0xFFFFFFFF - 4000;  // the clock wraps meanwhile
    run(&DeviceManager::startDownload);
    EXPECT_EQ(newsMeanwhile, 1);
    const std::uint32_t end = link.now;
    for (const auto& [passed, expected] :
         {std::pair{0u, 1}, {9999u, 1}, {10000u, -1}, {60000u, -1}}) {
        link.now = end + passed;
        EXPECT_EQ(news(), expected) << passed;
    }
}

// Threads that can be ended by force, as far as the panel can tell: one that was is left alone,
// and holds what it held.
class ForcibleThreads : public Threads {
  public:
    std::unique_ptr<RunningThread> start(const char*, std::function<void()> work) override {
        return std::make_unique<Forcible>(*this, std::move(work));
    }
    void guarded(const std::function<void()>& work) override { work(); }

    std::atomic<int> forced{0};
    std::thread abandoned;

  private:
    class Forcible : public RunningThread {
      public:
        Forcible(ForcibleThreads& owner, std::function<void()> work)
            : owner_(owner), thread_(std::move(work)) {}
        ~Forcible() override {
            if (thread_.joinable()) thread_.join();
        }
        bool endByForce() override {
            owner_.abandoned = std::move(thread_);
            ++owner_.forced;
            return true;
        }

      private:
        ForcibleThreads& owner_;
        std::thread thread_;
    };
};

class ManagerWithForcibleThreads : public testing::Test {
  protected:
    test::ScratchDirectory scratch_;
    SimulatedDevice device_;
    std::atomic<bool> stuck_{false}, released_{false};
    SilentAtLink link_{device_, anyCommand};
    ForcibleThreads threads_;
    DeviceManager manager_{link_, scratch_.path(), threads_};
    std::shared_ptr<RecordingSink> sink_ = newSink();
};

// It hangs in the system while it holds the client's lock, until it is ended by force.
TEST_F(ManagerWithForcibleThreads, StopEndsAHangingPollerByForceAndTheNextStartWorks) {
    test::RecordedLog log;
    link_.fails = [this] {
        const bool first = !stuck_.exchange(true);
        while (first && !released_) std::this_thread::yield();
        return first;
    };
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    while (!stuck_) std::this_thread::yield();
    // A transfer waits for the link that the poller holds.
    ASSERT_EQ(manager_.startUpload(sink_), 0);
    EXPECT_EQ(manager_.startDownload(newSink()), -1);
    EXPECT_EQ(manager_.Stop(), 0);
    EXPECT_EQ(threads_.forced, 1);
    EXPECT_EQ(log.count("强制结束"), 1);
    EXPECT_EQ(sink_->outcomes(), 1);
    EXPECT_LT(sink_->outcome(), 0);
    EXPECT_EQ(manager_.client().RebootDevice(), -1);
    EXPECT_EQ(manager_.Start("10.1.2.3"), 0);
    EXPECT_EQ(manager_.Stop(), 0);
    EXPECT_EQ(threads_.forced, 1);
    released_ = true;
    threads_.abandoned.join();
}

// It holds the link while the system takes its time, cancelled or not: until somebody has been
// ended by force, or so long that nobody will be any more.
TEST_F(ManagerWithForcibleThreads, StopWaitsForASlowTransferAndForcesNoPollerThatMerelyWaits) {
    link_.fails = [] { return true; };
    link_.pings = [this] {
        using namespace std::chrono_literals;
        const auto end = std::chrono::steady_clock::now() + 3s;
        stuck_ = true;
        while (threads_.forced == 0 && std::chrono::steady_clock::now() < end)
            std::this_thread::sleep_for(1ms);
        return false;
    };
    ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
    ASSERT_EQ(manager_.startUpload(sink_), 0);
    while (!stuck_) std::this_thread::yield();
    EXPECT_EQ(manager_.Stop(), 0);
    EXPECT_EQ(threads_.forced, 0);
    EXPECT_EQ(sink_->outcome(), -8);
}

// The link over real sockets, and a load that Stop cuts off: nothing may be left that still uses
// the closed socket. Under the thread sanitizer this is also the test of every shared flag.
TEST(ManagerOverUdp, RepeatedStartsAndStopsLeaveNothingBehind) {
    const test::ScratchDirectory scratch;
    UdpDeviceLink link([](const std::string&) { return false; });
    DeviceManager manager(link, scratch.path());
    for (int i = 0; i < 5; ++i) {
        ASSERT_EQ(manager.Start("127.0.0.1"), 0);
        const auto sink = newSink();
        ASSERT_EQ(manager.startUpload(sink), 0);
        manager.Stop();
        EXPECT_NE(sink->outcome(), 0);
    }
}

}  // namespace
}  // namespace korvane
