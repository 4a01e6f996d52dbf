#pragma once

#include <windows.h>

#include <functional>
#include <stdexcept>

namespace korvane::test {

// The window of a host whose message loop knows nothing of dialogs.
class TestHost {
  public:
    TestHost() {
        WNDCLASSW data{};
        data.lpfnWndProc = &procedure;
        data.hInstance = GetModuleHandleW(nullptr);
        data.lpszClassName = className;
        RegisterClassW(&data);
        window_ = CreateWindowExW(0, className, L"Test host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0,
                                  0, 1100, 760, nullptr, nullptr, data.hInstance, nullptr);
        if (!window_) throw std::runtime_error("no window could be made: is there a display?");
    }
    ~TestHost() { destroy(); }
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    HWND window() const { return window_; }
    void destroy() {
        if (IsWindow(window_)) DestroyWindow(window_);
    }
    void resize(int width, int height) const {
        SetWindowPos(window_, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER);
    }

    // From another thread: runs `work` on the window's thread, within whatever message loop it is
    // in, and returns when that is done.
    void run(std::function<void()> work) const {
        SendMessageW(window_, runMessage, 0, reinterpret_cast<LPARAM>(&work));
    }

  private:
    static constexpr const wchar_t* className = L"KorvaneTestHost";
    static constexpr UINT runMessage = WM_APP;

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != runMessage) return DefWindowProcW(window, message, wParam, lParam);
        (*reinterpret_cast<std::function<void()>*>(lParam))();
        return 0;
    }

    HWND window_;
};

}  // namespace korvane::test
