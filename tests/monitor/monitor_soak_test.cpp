#include <chrono>
#include <gtest/gtest.h>
#include <semaphore>

#include "device/device_manager.h"
#include "monitor/monitor_panel.h"
#include "resources/ids.h"
#include "runtime/system_facts.h"
#include "simulator/simulator_link.h"
#include "support/scratch_directory.h"
#include "support/test_host.h"

namespace korvane {
namespace {

struct ResourceCounts {
    int gdi;
    int handles;        // of the process
    int freeUserIndex;  // in the system's table of user objects, the place a new one would take
};

// Wine does not count for GetGuiResources: there the process's own table of GDI objects is counted.
// Its place is that of Windows, the 24 bytes of an entry are Wine's.
int gdiObjects() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return static_cast<int>(count);
    constexpr std::size_t tableInBlock = 0x94, entries = 0x4000, entrySize = 24, typeInEntry = 14;
    const std::uint8_t* block = nullptr;
    asm("movl %%fs:0x30, %0" : "=r"(block));
    const auto* table = *reinterpret_cast<const std::uint8_t* const*>(block + tableInBlock);
    int count = 0;
    for (std::size_t i = 0; i < entries; ++i) count += table[i * entrySize + typeInEntry] != 0;
    return count;
}

int freeUserIndex() {
    const HMENU probe = CreatePopupMenu();
    const int index = LOWORD(reinterpret_cast<ULONG_PTR>(probe));
    DestroyMenu(probe);
    return index;
}

ResourceCounts countResources() {
    return {gdiObjects(), nox_pub::mswin::test::openHandles(), freeUserIndex()};
}

// Its clock goes on in turns that the test gives, so that the poller does not spin.
class PacedLink : public SimulatorLink {
  public:
    using SimulatorLink::SimulatorLink;

    void sleep(std::uint32_t milliseconds) override {
        turns.acquire();
        SimulatorLink::sleep(milliseconds);
    }
    std::counting_semaphore<> turns{0};
};

// The whole way: simulated device, poller, cache, views.
class MonitorSoak : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(manager_.Start("10.1.2.3"), 0);
        ASSERT_TRUE(panel_.create(host_.window()));
        panel_.place({0, 0, 900, 560});
        panel_.show(true);
        timed_.push_back(panel_.hwnd());
        for (HWND w = GetWindow(panel_.hwnd(), GW_CHILD); w; w = GetWindow(w, GW_HWNDNEXT)) {
            if (HWND tree = GetDlgItem(w, IDC_STRUCTURE_TREE)) tree_ = tree;
            if (isDialogWindow(w)) timed_.push_back(w);
        }
        ASSERT_EQ(timed_.size(), 4u);
    }
    // Stopping waits on the link's clock, too.
    void TearDown() override {
        panel_.destroy();
        link_.turns.release(1 << 20);
        manager_.Stop();
    }

    static constexpr int refreshesPerTab = 40;

    void refresh(int times) {
        MSG message;
        for (int i = 0; i < times; ++i) {
            link_.turns.release(5);  // the poller sleeps in pieces of 100 ms
            for (HWND window : timed_) PostMessageW(window, WM_TIMER, 1, 0);
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
            if (i % refreshesPerTab == 0)
                SendDlgItemMessageW(panel_.hwnd(), IDC_MONITOR_TABS, TCM_SETCURFOCUS,
                                    static_cast<WPARAM>(i / refreshesPerTab % 3), 0);
        }
    }
    // A lost link would refresh nothing.
    void refreshUntilStatus() {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (SendMessageW(tree_, TVM_GETCOUNT, 0, 0) <= 4) {
            ASSERT_TRUE(std::chrono::steady_clock::now() < deadline);
            refresh(1);
        }
    }

    test::TestHost host_;
    test::ScratchDirectory scratch_;
    SimulatedDevice device_;
    PacedLink link_{device_, 60000};
    DeviceManager manager_{link_, scratch_.path()};
    MonitorPanel panel_{manager_};
    std::vector<HWND> timed_;
    HWND tree_ = nullptr;
};

TEST_F(MonitorSoak, ThousandsOfRefreshesUseUpNothing) {
    constexpr int refreshes = 1000;  // of each of the four windows
    refreshUntilStatus();
    refresh(4 * refreshesPerTab);  // what is made when a tab is first shown stays
    const ResourceCounts before = countResources();
    refresh(refreshes);
    const ResourceCounts after = countResources();
    EXPECT_EQ(after.gdi, before.gdi);
    // Some locks get a handle of their own when two threads first meet at them.
    EXPECT_LE(after.handles, before.handles + 5);
    // Its order of reuse is the system's own; one object lost in each refresh would show.
    EXPECT_LT(after.freeUserIndex, before.freeUserIndex + refreshes / 10);
    EXPECT_GT(before.gdi, 0);
    EXPECT_GT(before.handles, 0);
}

}  // namespace
}  // namespace korvane
