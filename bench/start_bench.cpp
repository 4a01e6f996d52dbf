// The time from cmmbStart to a panel that is visible and painted, in a process that starts it for
// the first time: what an operator waits after opening a station.

#include <windows.h>

#include "bench/ratio.h"
#include "korvane/plugin.h"

namespace {

constexpr double targetSeconds = 0.3;

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
    const HWND host = CreateWindowW(L"Static", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 1024,
                                    768, nullptr, nullptr, nullptr, nullptr);
    paintEverything();
    const KorvaneText address{"127.0.0.1"};

    bool visible = false;
    const double elapsed = korvane::bench::timeOf([&] {
        const int result = start(host, &address);
        const HWND panel = FindWindowExW(host, nullptr, nullptr, nullptr);
        paintEverything();
        visible = result == 0 && panel && IsWindowVisible(panel);
    });
    stop();

    const bool met = visible && elapsed < targetSeconds;
    std::printf("start to visible panel: %.3f s (target below %.1f s) %s\n", elapsed, targetSeconds,
                met       ? "ok"
                : visible ? "MISSED"
                          : "NOT VISIBLE");
    return met ? 0 : 1;
}
