#include "stub_plugin.h"

#include <cstring>
#include <string_view>

#include "korvane/plugin.h"

extern "C" __declspec(dllexport) StubCalls stubCalls;
StubCalls stubCalls;

namespace {

struct {
    char base[KORVANE_HANDLE_OFFSET];
    HWND window;
} panel;

// The last number of the address asks for a result: .101 for a device that fails, .102 for no
// panel.
int resultFor(std::string_view address) {
    if (address.ends_with(".101")) return KORVANE_DEVICE_FAILED;
    return address.ends_with(".102") ? KORVANE_NO_PANEL : KORVANE_STARTED;
}

// A panel with one control to give the focus to.
void createPanel() {
    panel.window = CreateWindowExW(WS_EX_CONTROLPARENT, L"Static", L"", WS_CHILD | WS_VISIBLE, 0, 0,
                                   90, 30, stubCalls.parent, nullptr, nullptr, nullptr);
    CreateWindowExW(0, L"Button", L"in the panel", WS_CHILD | WS_VISIBLE | WS_TABSTOP, 0, 0, 90, 30,
                    panel.window, nullptr, nullptr, nullptr);
}

}  // namespace

extern "C" {

__declspec(dllexport) int __cdecl cmmbStart(void* window, const KorvaneText* text) {
    ++stubCalls.starts;
    std::memcpy(&stubCalls.parent, static_cast<char*>(window) + KORVANE_HANDLE_OFFSET,
                sizeof(HWND));
    const auto* address = static_cast<const char*>(text->characters);
    lstrcpynA(stubCalls.address, address, sizeof stubCalls.address);
    const int result = resultFor(address);
    if (result != KORVANE_NO_PANEL) createPanel();
    return result;
}

__declspec(dllexport) void* __cdecl cmmbGetWnd() {
    return &panel;
}

__declspec(dllexport) int __cdecl cmmbStop() {
    ++stubCalls.stops;
    if (panel.window) DestroyWindow(panel.window);
    panel.window = nullptr;
    return 0;
}
}
