#include "ui/dialog.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

#include "log/log.h"
#include "text/text.h"
#include "ui/controls.h"
#include "ui/modal.h"
#include "ui/module.h"

namespace korvane {
namespace {

constexpr int initFailed = -1;

void showFailure(const char* reason) noexcept {
    logLine(logError, "窗口过程异常: %s", reason);
    const ModalScope scope;
    try {
        const std::wstring text = L"操作未完成，程序内部错误:\n" + toWide(reason);
        MessageBoxW(scope.owner(), text.c_str(), L"", MB_OK | MB_ICONERROR);
    } catch (...) {
        // No memory left for a text of our own.
        MessageBoxW(scope.owner(), L"内存不足", L"", MB_OK | MB_ICONERROR);
    }
}

// Called within a handler of exceptions; tells the operator what it was.
void showCurrentException() noexcept {
    try {
        throw;
    } catch (const Interrupted&) {
        return;
    } catch (const std::exception& error) {
        showFailure(error.what());
    } catch (...) {
        showFailure("?");
    }
}

// Whether there is an answer; it is where the system looks for it.
bool answered(HWND window, std::optional<LRESULT> answer) {
    if (answer) SetWindowLongPtrW(window, DWLP_MSGRESULT, *answer);
    return answer.has_value();
}

}  // namespace

bool isDialogWindow(HWND window) {
    std::array<wchar_t, 16> name{};
    GetClassNameW(window, name.data(), static_cast<int>(name.size()));
    return std::wstring_view(name.data()) == L"#32770";
}

Dialog::~Dialog() {
    if (!hwnd_) return;
    // The derived part is gone already: its handlers must hear no more.
    SetWindowLongPtrW(hwnd_, DWLP_USER, 0);
    DestroyWindow(hwnd_);
}

bool Dialog::create(HWND parent) {
    if (hwnd_) return false;
    const ActivationScope activation;
    modal_ = false;
    CreateDialogParamW(moduleInstance(), MAKEINTRESOURCEW(resourceId_), parent, &procedure,
                       reinterpret_cast<LPARAM>(this));
    rethrowInitError();
    return hwnd_ != nullptr;
}

int Dialog::showModal() {
    if (hwnd_) return -1;
    const ModalScope scope;
    modal_ = true;
    const INT_PTR result =
        DialogBoxParamW(moduleInstance(), MAKEINTRESOURCEW(resourceId_), scope.owner(), &procedure,
                        reinterpret_cast<LPARAM>(this));
    rethrowInitError();
    scope.check();
    return static_cast<int>(result);
}

void Dialog::destroy() {
    if (hwnd_) DestroyWindow(hwnd_);
}

void Dialog::show(bool visible) {
    ShowWindow(hwnd_, visible ? SW_SHOW : SW_HIDE);
}

void Dialog::place(const RECT& area) {
    SetWindowPos(hwnd_, nullptr, area.left, area.top, area.right - area.left,
                 area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

bool Dialog::onCommand(int id, int, HWND) {
    if (!modal_ || (id != IDOK && id != IDCANCEL)) return false;
    end(id);
    return true;
}

std::optional<LRESULT> Dialog::onNotify(const NMHDR&) {
    return std::nullopt;
}
void Dialog::onTimer(UINT_PTR) {}
void Dialog::onSize(int, int) {}
void Dialog::onDestroy() {}
std::optional<LRESULT> Dialog::onSent(UINT, WPARAM, LPARAM) {
    return std::nullopt;
}
std::optional<INT_PTR> Dialog::onMessage(UINT, WPARAM, LPARAM) {
    return std::nullopt;
}

void Dialog::end(int result) {
    if (hwnd_) EndDialog(hwnd_, result);
}

int Dialog::scaled(int pixels) const {
    return Control(hwnd_).scaled(pixels);
}

// After a handler has run, the dialog object must not be touched: it may have gone meanwhile.
INT_PTR CALLBACK Dialog::procedure(HWND window, UINT message, WPARAM wParam,
                                   LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        return reinterpret_cast<Dialog*>(lParam)->initialise(window);
    }
    auto* self = reinterpret_cast<Dialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (!self) return FALSE;
    if (message == WM_NCDESTROY) {
        SetWindowLongPtrW(window, DWLP_USER, 0);
        self->hwnd_ = nullptr;
        return FALSE;
    }
    try {
        return self->handle(message, wParam, lParam);
    } catch (...) {
        showCurrentException();
        return FALSE;
    }
}

INT_PTR Dialog::initialise(HWND window) noexcept {
    hwnd_ = window;
    try {
        return onInit() ? TRUE : FALSE;
    } catch (...) {
        initError_ = std::current_exception();
    }
    if (modal_)
        EndDialog(window, initFailed);
    else
        DestroyWindow(window);
    return FALSE;
}

void Dialog::rethrowInitError() {
    if (initError_) std::rethrow_exception(std::exchange(initError_, nullptr));
}

INT_PTR Dialog::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    const HWND window = hwnd_;
    switch (message) {
        case WM_COMMAND:
            return onCommand(LOWORD(wParam), HIWORD(wParam), reinterpret_cast<HWND>(lParam));
        case WM_NOTIFY:
            return answered(window, onNotify(*reinterpret_cast<const NMHDR*>(lParam)));
        case WM_TIMER:
            onTimer(wParam);
            return TRUE;
        case WM_SIZE:
            onSize(LOWORD(lParam), HIWORD(lParam));
            return TRUE;
        case WM_DESTROY:
            onDestroy();
            return TRUE;
        default:
            if (answered(window, onSent(message, wParam, lParam))) return TRUE;
            return onMessage(message, wParam, lParam).value_or(FALSE);
    }
}

}  // namespace korvane
