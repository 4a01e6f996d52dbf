#include "stub_plugin.h"

#include <cstring>

#include "korvane/plugin.h"

namespace {

struct {
    char base[KORVANE_HANDLE_OFFSET];
    HWND window;
} panel;

StubCalls calls;

// The last number of the address asks for a result: .101 for a device that fails, .102 for no
// panel.
int resultFor(const char* address) {
    const char* last = std::strrchr(address, '.');
    if (std::strcmp(last, ".101") == 0) return KORVANE_DEVICE_FAILED;
    return std::strcmp(last, ".102") == 0 ? KORVANE_NO_PANEL : KORVANE_STARTED;
}

// A panel with one control to give the focus to.
void createPanel() {
    panel.window = CreateWindowExW(WS_EX_CONTROLPARENT, L"Static", L"", WS_CHILD | WS_VISIBLE, 0, 0,
                                   90, 30, calls.parent, nullptr, nullptr, nullptr);
    CreateWindowExW(0, L"Button", L"in the panel", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 90, 30,
                    panel.window, nullptr, nullptr, nullptr);
}

}  // namespace

extern "C" {

__declspec(dllexport) int __cdecl cmmbStart(void* window, const KorvaneText* text) {
    ++calls.starts;
    std::memcpy(&calls.parent, static_cast<char*>(window) + KORVANE_HANDLE_OFFSET, sizeof(HWND));
    const auto* address = static_cast<const char*>(text->characters);
    std::strncpy(calls.address, address, sizeof calls.address - 1);
    const int result = resultFor(address);
    if (result != KORVANE_NO_PANEL) createPanel();
    return result;
}

__declspec(dllexport) void* __cdecl cmmbGetWnd() {
    return &panel;
}

__declspec(dllexport) int __cdecl cmmbStop() {
    ++calls.stops;
    if (panel.window) DestroyWindow(panel.window);
    panel.window = nullptr;
    return 0;
}

__declspec(dllexport) void __cdecl stubCalls(StubCalls* out) {
    *out = calls;
    calls = {};
}
}
