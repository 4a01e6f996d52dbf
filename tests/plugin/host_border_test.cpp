#include "plugin/host_border.h"

#include <cstring>
#include <gtest/gtest.h>

#include "support/test_host.h"

namespace korvane {
namespace {

// Two pages of memory, the second of which cannot be touched.
class GuardedPage {
  public:
    GuardedPage()
        : memory_(static_cast<char*>(
              VirtualAlloc(nullptr, 8192, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
        DWORD before = 0;
        VirtualProtect(memory_ + 4096, 4096, PAGE_NOACCESS, &before);
    }
    ~GuardedPage() { VirtualFree(memory_, 0, MEM_RELEASE); }
    GuardedPage(const GuardedPage&) = delete;
    GuardedPage& operator=(const GuardedPage&) = delete;

    // The last `size` bytes that may be read.
    char* last(std::size_t size) { return memory_ + 4096 - size; }
    char* forbidden() { return memory_ + 4096; }

  private:
    char* memory_;
};

const void* address(std::uintptr_t value) {
    return reinterpret_cast<const void*>(value);
}

TEST(HostWindow, IsFoundInAWindowObjectAndAsAPlainHandle) {
    const test::TestHost host;
    struct {
        std::byte base[0x20];  // in a 32-bit process
        HWND window;
    } object{};
    std::memset(object.base, 0xCD, sizeof object.base);
    object.window = host.window();
    EXPECT_EQ(hostWindow(&object), host.window());
    EXPECT_EQ(hostWindow(host.window()), host.window());
}

TEST(HostWindow, IsNothingWhereThereIsNone) {
    HWND gone = nullptr;
    {
        const test::TestHost host;
        gone = host.window();
    }
    PanelWindowObject withoutWindow, withGoneWindow;
    withGoneWindow.window = gone;
    GuardedPage page;
    const void* cases[] = {nullptr,     &withoutWindow,    &withGoneWindow,
                           gone,        page.last(32),     page.forbidden(),
                           address(16), address(0xFFFF0F), address(0xFFFFFFF0)};
    for (const void* value : cases) EXPECT_EQ(hostWindow(value), nullptr) << value;
}

TEST(HostText, IsReadNarrowAndWide) {
    const struct {
        const void* characters;
    } narrow{"192.168.1.10"}, wide{L"192.168.1.10"}, empty{""}, none{nullptr};
    EXPECT_EQ(hostText(&narrow), "192.168.1.10");
    EXPECT_EQ(hostText(&wide), "192.168.1.10");
    EXPECT_EQ(hostText(&empty), "");
    EXPECT_EQ(hostText(&none), "");
}

TEST(HostText, EndsWithTheMemoryOrAtItsLimit) {
    GuardedPage page;
    const struct {
        const void* characters;
    } cut{std::memcpy(page.last(4), "10.0", 4)}, bad{page.forbidden()}, low{address(3)};
    EXPECT_EQ(hostText(&cut), "10.0");
    EXPECT_EQ(hostText(&bad), "");
    EXPECT_EQ(hostText(&low), "");
    const std::string narrowText(300, '7');
    const std::wstring wideText(300, L'7');
    const struct {
        const void* characters;
    } longNarrow{narrowText.c_str()}, longWide{wideText.c_str()};
    EXPECT_EQ(hostText(&longNarrow), std::string(255, '7'));
    EXPECT_EQ(hostText(&longWide), std::string(255, '7'));
    for (const void* value : {static_cast<const void*>(nullptr), address(8), address(0xFFFFFFFE),
                              static_cast<const void*>(page.last(2))})
        EXPECT_EQ(hostText(value), "") << value;
}

}  // namespace
}  // namespace korvane
