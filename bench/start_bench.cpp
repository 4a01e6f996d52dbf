// The time from cmmbStart to a panel that is visible and painted, in a process that starts it for
// the first time: what an operator waits after opening a station.

#include <windows.h>

#include <cstdio>

#include "korvane/plugin.h"

namespace {

constexpr double targetSeconds = 0.3;

double seconds() {
    LARGE_INTEGER count, frequency;
    QueryPerformanceCounter(&count);
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(count.QuadPart) / static_cast<double>(frequency.QuadPart);
}

HWND makeHostWindow() {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.lpszClassName = L"KorvaneStartBench";
    RegisterClassW(&windowClass);
    return CreateWindowW(L"KorvaneStartBench", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1024,
                         768, nullptr, nullptr, windowClass.hInstance, nullptr);
}

void paintEverything() {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

template <class Function>
Function find(HMODULE library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace

int main() {
    const HMODULE library = LoadLibraryW(L"Korvane.dll");
    if (!library) {
        std::fputs("Korvane.dll was not found beside this program\n", stderr);
        return 1;
    }
    const auto start = find<KorvaneStart>(library, "cmmbStart");
    const auto stop = find<KorvaneStop>(library, "cmmbStop");
    const HWND host = makeHostWindow();
    paintEverything();
    const KorvaneText address{"127.0.0.1"};

    const double begin = seconds();
    const int result = start(host, &address);
    const HWND panel = FindWindowExW(host, nullptr, nullptr, nullptr);
    paintEverything();
    const double elapsed = seconds() - begin;
    const bool visible = result == 0 && panel && IsWindowVisible(panel);
    stop();

    const bool met = visible && elapsed < targetSeconds;
    std::printf("start to visible panel: %.3f s (target below %.1f s) %s\n", elapsed, targetSeconds,
                met       ? "ok"
                : visible ? "MISSED"
                          : "NOT VISIBLE");
    return met ? 0 : 1;
}
