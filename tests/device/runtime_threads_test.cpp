#include "device/runtime_threads.h"

#include <windows.h>

#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>

#include "device/device_manager.h"
#include "device/exchange_lock.h"
#include "device/reachability.h"
#include "simulator/simulator_link.h"
#include "support/recorded_log.h"
#include "support/recording_sink.h"
#include "support/scratch_directory.h"

namespace korvane {
namespace {

// What the compiler must not know.
volatile std::uintptr_t nowhere = 8;

void faultInOurCode() {
    *reinterpret_cast<volatile int*>(nowhere) = 1;
}
// Nothing can be unwound from there: what is on the stack in front of it is abandoned.
void faultInTheSystem() {
    std::size_t (*volatile length)(const char*) = &std::strlen;
    asm volatile("" : : "r"(length(reinterpret_cast<const char*>(nowhere))));
}

// Faults when this command is sent, once.
class FaultyLink : public SimulatorLink {
  public:
    FaultyLink(SimulatedDevice& device, std::uint32_t command, void (*fault)())
        : SimulatorLink(device, 60000), command_(command), fault_(fault) {}

    int send(std::uint32_t address, std::uint16_t port, std::uint32_t timeoutMs, const void* data,
             std::uint16_t length) override {
        if (getBigEndian32(static_cast<const std::uint8_t*>(data)) == command_ &&
            !faulted.exchange(true))
            fault_();
        return SimulatorLink::send(address, port, timeoutMs, data, length);
    }

    std::atomic<bool> faulted{false};

  private:
    std::uint32_t command_;
    void (*fault_)();
};

class Faults : public testing::TestWithParam<void (*)()> {
  protected:
    // The panel's threads over a link that faults at this command.
    void start(std::uint32_t command) {
        link_ = std::make_unique<FaultyLink>(device_, command, GetParam());
        manager_ = std::make_unique<DeviceManager>(*link_, scratch_.path(), runtimeThreads());
        ASSERT_EQ(manager_->Start("10.1.2.3"), 0);
    }
    int load() {
        const auto sink = std::make_shared<test::RecordingSink>();
        EXPECT_EQ(manager_->startUpload(sink), 0);
        const int outcome = sink->outcome();
        EXPECT_EQ(sink->outcomes(), 1);
        return outcome;
    }

    test::ScratchDirectory scratch_;
    test::RecordedLog log_;
    SimulatedDevice device_;
    std::unique_ptr<FaultyLink> link_;
    std::unique_ptr<DeviceManager> manager_;
};

TEST_P(Faults, InATransferFailItAndNothingElse) {
    start(3004);
    EXPECT_EQ(load(), -1);
    EXPECT_EQ(log_.count("2 从设备获取: 异常: SE: 内存访问错误"), 1);
    EXPECT_EQ(log_.count("2 从设备获取: 失败, 结果-1, 停在GetImageBlockA"), 1);
    EXPECT_EQ(load(), 0);
    EXPECT_EQ(manager_->client().RebootDevice(), 0);
    EXPECT_EQ(manager_->Stop(), 0);
}

TEST_P(Faults, InAPollFailItAndTheNextOneSucceeds) {
    start(4008);
    const auto image = std::make_unique<DeviceStatusImage>();
    while (manager_->getDeviceStatusImage(*image) != 0) std::this_thread::yield();
    EXPECT_TRUE(link_->faulted);
    EXPECT_EQ(log_.count("2 状态轮询异常: SE: 内存访问错误"), 1);
    EXPECT_EQ(manager_->client().RebootDevice(), 0);
    EXPECT_EQ(manager_->Stop(), 0);
}

INSTANTIATE_TEST_SUITE_P(Places, Faults, testing::Values(&faultInOurCode, &faultInTheSystem),
                         [](const auto& one) {
                             return one.param == &faultInOurCode ? "OurCode" : "System";
                         });

TEST(RuntimeThreads, LogWhatEscapesTheirWork) {
    test::RecordedLog log;
    runtimeThreads().start("worker", [] { faultInOurCode(); }).reset();
    EXPECT_EQ(log.count("2 线程 worker 异常结束: SE: 内存访问错误"), 1);
}

// The system ends a thread wherever it is: in the middle of waiting for a lock, too.
TEST(ExchangeLockOnRuntimeThreads, OutlivesWaitersAndOwnersThatAreEndedByForce) {
    ExchangeLock lock;
    std::atomic<int> arrived{0};
    std::atomic<std::thread::id> owner;
    const auto hold = [&](auto whenHeld) {
        return runtimeThreads().start("holder", [&, whenHeld] {
            ++arrived;
            lock.lock();
            whenHeld();
            lock.unlock();
        });
    };
    lock.lock();
    for (int i = 1; i <= 20; ++i) {
        const auto waiter = hold([] {});
        while (arrived < i) std::this_thread::yield();
        EXPECT_TRUE(waiter->endByForce());
    }
    lock.unlock();
    const auto dead = hold([&owner] {
        owner = std::this_thread::get_id();
        Sleep(INFINITE);
    });
    while (owner.load() == std::thread::id()) std::this_thread::yield();
    EXPECT_TRUE(dead->endByForce());
    EXPECT_TRUE(lock.ownedBy(owner));
    lock.takeFrom(owner);
    hold([] {}).reset();
}

HANDLE found;
std::atomic<int> lookups;
std::uint32_t slowLookup(const std::string&) {
    ++lookups;
    WaitForSingleObject(found, INFINITE);
    return 0x0100007F;
}

TEST(ReachabilityByName, IsNotWaitedForAndLookedUpOnce) {
    found = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    lookups = 0;
    Reachability device(&slowLookup);
    EXPECT_FALSE(device.answers());
    device.watch("mux.station");
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(device.answers());
    SetEvent(found);
    while (device.address() != 0x0100007F) std::this_thread::yield();
    EXPECT_EQ(lookups, 1);
    device.watch("10.1.2.3");
    EXPECT_EQ(device.address(), 0x0302010A);
    EXPECT_EQ(lookups, 1);
    CloseHandle(found);
}

}  // namespace
}  // namespace korvane
