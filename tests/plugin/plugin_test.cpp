#include "korvane/plugin.h"

#include <windows.h>

#include <algorithm>
#include <bit>
#include <filesystem>
#include <gtest/gtest.h>
#include <psapi.h>

#include "runtime/system_facts.h"
#include "support/robot.h"
#include "support/test_host.h"

namespace korvane {
namespace {

// The library stands at the top of the build folder, the tests two folders below it.
std::filesystem::path libraryPath() {
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
    return std::filesystem::path(path).parent_path() / ".." / ".." / "Korvane.dll";
}

// A host may be built with the same compiler, and its runtime shared: here the one beside the
// tests, before the library.
const HMODULE sharedRuntime = LoadLibraryW(L"libgcc_s_dw2-1.dll");

class PluginTest : public testing::Test {
  protected:
    void SetUp() override {
        library_ = LoadLibraryW(libraryPath().c_str());
        ASSERT_TRUE(sharedRuntime && library_);
        start_ = find<KorvaneStart>("cmmbStart");
        getWnd_ = find<KorvaneGetWnd>("cmmbGetWnd");
        stop_ = find<KorvaneStop>("cmmbStop");
        ASSERT_TRUE(start_ && getWnd_ && stop_);
        parent_.window = host_.window();
    }
    void TearDown() override {
        if (!stop_) return;
        EXPECT_EQ(stop_(), 0);
        FreeLibrary(library_);
        EXPECT_FALSE(GetModuleHandleW(L"Korvane.dll")) << "nothing holds it any more";
    }

    template <class Function>
    Function find(const char* name) const {
        return std::bit_cast<Function>(GetProcAddress(library_, name));
    }
    // As a 32-bit host's class library lays it out.
    struct WindowObject {
        std::byte base[0x20] = {};
        HWND window = nullptr;
        std::byte rest[0x100 - 0x24] = {};
    };
    HWND panel() const { return static_cast<WindowObject*>(getWnd_())->window; }
    // As the inline accessors of the host's class library read it.
    bool allButTheHandleIsZero() const {
        const auto& object = *static_cast<WindowObject*>(getWnd_());
        const auto isZero = [](std::byte byte) { return byte == std::byte{}; };
        return std::ranges::all_of(object.base, isZero) && std::ranges::all_of(object.rest, isZero);
    }

    test::TestHost host_;
    HMODULE library_ = nullptr;
    KorvaneStart start_ = nullptr;
    KorvaneGetWnd getWnd_ = nullptr;
    KorvaneStop stop_ = nullptr;
    WindowObject parent_;
    // A loopback address that no device listens on.
    KorvaneText address_{"127.0.0.254"};
};

TEST_F(PluginTest, ExportsItsThreeFunctionsAndNothingElse) {
    const auto* image = reinterpret_cast<const char*>(library_);
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos.e_lfanew);
    const auto& entry = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto& exports =
        *reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + entry.VirtualAddress);
    EXPECT_EQ(exports.NumberOfFunctions, 3u);
    EXPECT_EQ(exports.NumberOfNames, 3u) << "not those alone that are there";
}

TEST_F(PluginTest, StartsOnceAndStopsAsOftenAsAsked) {
    EXPECT_EQ(panel(), nullptr) << "the object is there before its window";
    EXPECT_TRUE(allButTheHandleIsZero());
    EXPECT_EQ(start_(&parent_, &address_), KORVANE_STARTED);
    EXPECT_TRUE(allButTheHandleIsZero());
    const HWND first = panel();
    EXPECT_EQ(GetParent(first), host_.window());
    EXPECT_TRUE(IsWindowVisible(first));
    EXPECT_EQ(start_(&parent_, &address_), KORVANE_NO_PANEL);
    EXPECT_EQ(panel(), first);
    EXPECT_EQ(stop_(), 0);
    EXPECT_FALSE(IsWindow(first));
    EXPECT_EQ(panel(), nullptr);
    EXPECT_TRUE(allButTheHandleIsZero());
    EXPECT_EQ(stop_(), 0);
    EXPECT_EQ(start_(host_.window(), &address_), KORVANE_STARTED) << "with a plain handle";
    FreeLibrary(library_);
    EXPECT_EQ(GetModuleHandleW(L"Korvane.dll"), library_) << "freed before it was stopped";
    ASSERT_EQ(LoadLibraryW(libraryPath().c_str()), library_);
}

TEST_F(PluginTest, NeedsAWindowButNoAddress) {
    for (const std::uintptr_t bad : {std::uintptr_t{0}, std::uintptr_t{16}, ~std::uintptr_t{15}}) {
        EXPECT_EQ(start_(reinterpret_cast<void*>(bad), &address_), KORVANE_NO_PANEL);
        EXPECT_EQ(panel(), nullptr);
    }
    const KorvaneText words{"no address"};
    for (const KorvaneText* text : {&words, static_cast<const KorvaneText*>(nullptr)}) {
        EXPECT_EQ(start_(&parent_, text), KORVANE_STARTED);
        EXPECT_EQ(stop_(), 0);
    }
}

// Stopped or started anew from within a loop of its own, a waiting command is left by an exception:
// that it finds its way in a process that holds another copy of the compiler's runtime is seen
// here, too. What it asked was about the device before.
TEST_F(PluginTest, AStopOrAnotherStartEndsWhatItAsks) {
    ASSERT_EQ(start_(&parent_, &address_), KORVANE_STARTED);
    for (const bool starts : {true, false}) {
        RobotThread([this, starts](Robot& r) {
            constexpr int rebootButton = 27;
            r.click(panel(), rebootButton);
            const HWND question = r.waitBox("确认要重启设备吗?");
            host_.run([this, starts] { starts ? start_(&parent_, &address_) : stop_(); });
            r.waitGone(question);
            r.waitFor("the host to be usable", [&] { return IsWindowEnabled(host_.window()); });
        }).finish();
        EXPECT_EQ(panel() != nullptr, starts);
    }
}

struct Footprint {
    long bytes;
    int handles;
    DWORD freeSlot;  // the one of each thread that the next library would get
};

Footprint footprint() {
    PROCESS_MEMORY_COUNTERS memory{};
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    const DWORD slot = TlsAlloc();
    TlsFree(slot);
    return {static_cast<long>(memory.PagefileUsage), nox_pub::mswin::test::openHandles(), slot};
}

// A host that loads the library only while it shows the panel, again and again. The object that the
// exports make would cost 900 KB each time, what the compiler's runtime keeps 20 KB and two
// handles.
TEST_F(PluginTest, LeavesNothingBehindWhenItIsFreed) {
    // Wine's own loses a handle whenever it is unloaded.
    const HMODULE fileDialogs = LoadLibraryW(L"comdlg32.dll");
    const auto rounds = [this](int count) {
        for (int i = 0; i < count; ++i) {
            EXPECT_EQ(start_(&parent_, &address_), KORVANE_STARTED);
            TearDown();
            SetUp();
        }
        return footprint();
    };
    const Footprint before = rounds(4), after = rounds(10);
    EXPECT_LT(after.bytes - before.bytes, 120'000);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_EQ(after.freeSlot, before.freeSlot);
    FreeLibrary(fileDialogs);
}

}  // namespace
}  // namespace korvane
