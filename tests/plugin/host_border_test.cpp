#include "plugin/host_border.h"

#include <cstring>
#include <gtest/gtest.h>

#include "support/test_host.h"

namespace korvane {
namespace {

// The end of a page of memory, behind which is one that cannot be touched.
char* endOfMemory() {
    constexpr std::size_t page = 4096;
    auto* memory = static_cast<char*>(
        VirtualAlloc(nullptr, 2 * page, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE));
    std::memset(memory, '9', 2 * page);
    DWORD before = 0;
    VirtualProtect(memory + page, page, PAGE_NOACCESS, &before);
    return memory + page;
}
char* const end = endOfMemory();

const void* address(std::uintptr_t value) {
    return reinterpret_cast<const void*>(value);
}

TEST(HostWindow, IsFoundInAWindowObjectAndAsAPlainHandleWhileItIsThere) {
    test::TestHost host;
    struct {
        std::byte base[0x20];  // in a 32-bit process
        HWND window;
    } object{}, withoutWindow{};
    std::memset(object.base, 0xCD, sizeof object.base);
    object.window = host.window();
    EXPECT_EQ(hostWindow(&object), host.window());
    EXPECT_EQ(hostWindow(host.window()), host.window());
    host.destroy();
    const void* none[] = {&object,     host.window(),     &withoutWindow,
                          nullptr,     end - 32,          end,
                          address(16), address(0xFFFF0F), address(0xFFFFFFF0)};
    for (const void* value : none) EXPECT_EQ(hostWindow(value), nullptr) << value;
}

TEST(HostText, IsReadNarrowAndWideUpToItsLimitOrTheMemorys) {
    const std::string longest(255, '7'), tooLong(300, '7');
    const std::wstring tooLongWide(300, L'7');
    const std::pair<const void*, std::string> cases[] = {
        {"192.168.1.10", "192.168.1.10"},
        {L"192.168.1.10", "192.168.1.10"},
        {tooLong.c_str(), longest},
        {tooLongWide.c_str(), longest},
        {std::memcpy(end - 4, "10.0", 4), "10.0"},
        {end, ""},
        {"", ""},
        {nullptr, ""},
        {address(3), ""},
    };
    for (const auto& [characters, text] : cases) {
        const KorvaneText object{characters};
        EXPECT_EQ(hostText(&object), text);
    }
    for (const void* none : {address(0), address(8), address(0xFFFFFFFE)})
        EXPECT_EQ(hostText(none), "") << none;
    EXPECT_EQ(hostText(end - 2), "");
}

}  // namespace
}  // namespace korvane
