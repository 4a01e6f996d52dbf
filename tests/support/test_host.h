#pragma once

#include <windows.h>

#include <functional>
#include <stdexcept>
#include <vector>

namespace korvane::test {

// The window of a host whose message loop knows nothing of dialogs. It may be a dialog all the
// same, with a default button of its own.
class TestHost {
  public:
    enum class Kind { Window, Dialog };

    explicit TestHost(Kind kind = Kind::Window) {
        window_ = kind == Kind::Dialog ? makeDialog() : makeWindow();
        if (!window_) throw std::runtime_error("no window could be made: is there a display?");
        SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
        SetWindowTextW(window_, L"Test host");
        SetWindowPos(window_, nullptr, 0, 0, 1100, 760, SWP_NOZORDER | SWP_SHOWWINDOW);
    }
    ~TestHost() { destroy(); }
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    HWND window() const { return window_; }
    // The button of a host that is a dialog.
    HWND button() const { return GetDlgItem(window_, IDOK); }
    // The numbers of the commands that the window got.
    const std::vector<int>& commands() const { return commands_; }
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

    static HWND makeWindow() {
        WNDCLASSW data{};
        data.lpfnWndProc = &procedure;
        data.hInstance = GetModuleHandleW(nullptr);
        data.lpszClassName = className;
        RegisterClassW(&data);
        return CreateWindowExW(0, className, L"", WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, nullptr, nullptr,
                               data.hInstance, nullptr);
    }
    static HWND makeDialog() {
        alignas(DWORD) const struct {
            DLGTEMPLATE dialog;
            WORD menu, windowClass, title;
        } data{{WS_OVERLAPPEDWINDOW, 0, 0, 0, 0, 0, 0}, 0, 0, 0};
        HWND dialog = CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &data.dialog, nullptr,
                                                 &dialogProcedure, 0);
        CreateWindowExW(0, L"Button", L"OK", WS_CHILD | WS_VISIBLE | WS_TABSTOP | BS_DEFPUSHBUTTON,
                        0, 0, 60, 24, dialog, reinterpret_cast<HMENU>(IDOK), nullptr, nullptr);
        return dialog;
    }

    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (dialogProcedure(window, message, wParam, lParam)) return 0;
        return DefWindowProcW(window, message, wParam, lParam);
    }
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wParam,
                                            LPARAM lParam) {
        auto* self = reinterpret_cast<TestHost*>(GetWindowLongPtrW(window, GWLP_USERDATA));
        if (message == WM_COMMAND && self) self->commands_.push_back(LOWORD(wParam));
        if (message != runMessage) return FALSE;
        (*reinterpret_cast<std::function<void()>*>(lParam))();
        return TRUE;
    }

    HWND window_;
    std::vector<int> commands_;
};

}  // namespace korvane::test
