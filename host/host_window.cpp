#include "host_window.h"

#include <algorithm>
#include <commctrl.h>
#include <stdexcept>
#include <utility>

#include "host_ids.h"
#include "ipv4_address.h"
#include "text/text.h"

namespace korvane::host {

namespace {

constexpr wchar_t windowClass[] = L"KorvaneHostWindow";
constexpr wchar_t frameClass[] = L"KorvanePanelFrame";
constexpr wchar_t title[] = L"Korvane 宿主程序";
constexpr int width = 1120, height = 820;           // on a screen of 96 dots per inch
constexpr int leastWidth = 480, leastHeight = 320;  // likewise

HINSTANCE self() {
    return GetModuleHandleW(nullptr);
}

int scaled(int pixels) {
    HDC screen = GetDC(nullptr);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    return MulDiv(pixels, dpi, 96);
}

void registerClass(const wchar_t* name, WNDPROC procedure, int background) {
    WNDCLASSEXW data{};
    data.cbSize = sizeof data;
    data.lpfnWndProc = procedure;
    data.hInstance = self();
    data.hIcon = LoadIconW(self(), MAKEINTRESOURCEW(IDI_HOST));
    data.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // the arrow
    data.hbrBackground = GetSysColorBrush(background);
    data.lpszClassName = name;
    RegisterClassExW(&data);
}

int heightOf(HWND window) {
    RECT area{};
    GetWindowRect(window, &area);
    return area.bottom - area.top;
}

// In the middle of the work area, and no larger than that.
RECT startingPlace() {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const LONG w = std::min<LONG>(scaled(width), work.right - work.left);
    const LONG h = std::min<LONG>(scaled(height), work.bottom - work.top);
    const LONG left = (work.left + work.right - w) / 2, top = (work.top + work.bottom - h) / 2;
    return {left, top, left + w, top + h};
}

std::string windowText(HWND window) {
    std::wstring buffer(static_cast<std::size_t>(GetWindowTextLengthW(window)) + 1, L'\0');
    buffer.resize(static_cast<std::size_t>(
        GetWindowTextW(window, buffer.data(), static_cast<int>(buffer.size()))));
    return toUtf8(buffer);
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// Says in the empty place what belongs there; the panel covers it.
void paintHint(HWND frame) {
    PAINTSTRUCT paint;
    HDC target = BeginPaint(frame, &paint);
    RECT area{};
    GetClientRect(frame, &area);
    HFONT font = reinterpret_cast<HFONT>(SendMessageW(GetParent(frame), WM_GETFONT, 0, 0));
    HGDIOBJ previous = SelectObject(target, font);
    SetBkMode(target, TRANSPARENT);
    SetTextColor(target, GetSysColor(COLOR_GRAYTEXT));
    DrawTextW(target, L"尚未连接设备", -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
    SelectObject(target, previous);
    EndPaint(frame, &paint);
}

LRESULT CALLBACK frameProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            paintHint(window);
            return 0;
        case WM_SIZE:
            InvalidateRect(window, nullptr, TRUE);
            return 0;
        default:
            return DefWindowProcW(window, message, wParam, lParam);
    }
}

}  // namespace

std::string startResultText(int result, std::string_view address) {
    const std::string device(address);
    switch (result) {
        case KORVANE_STARTED:
            return "已连接设备 " + device + "（插件返回 0：启动成功）";
        case KORVANE_DEVICE_FAILED:
            return "面板已打开，但与设备 " + device + " 的通信未能启动（插件返回 1）";
        case KORVANE_NO_PANEL:
            return "面板窗口未能创建（插件返回 -2）";
        default:
            return "插件返回未知的结果 " + std::to_string(result);
    }
}

HostWindow::HostWindow(Plugin& plugin) : plugin_(plugin) {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    registerClass(windowClass, windowProc, COLOR_BTNFACE);
    registerClass(frameClass, frameProc, COLOR_WINDOW);
    const RECT at = startingPlace();
    CreateWindowExW(WS_EX_CONTROLPARENT, windowClass, title, WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
                    at.left, at.top, at.right - at.left, at.bottom - at.top, nullptr, nullptr,
                    self(), this);
    if (window_ == nullptr) throw std::runtime_error("the main window cannot be created");
    createChildren();
    showStatus("就绪：请输入设备地址，然后按“连接”");
    ShowWindow(window_, SW_SHOW);
    SetFocus(GetDlgItem(bar_, IDC_ADDRESS));
}

HostWindow::~HostWindow() {
    if (window_ != nullptr) DestroyWindow(window_);
}

void HostWindow::createChildren() {
    bar_ = CreateDialogParamW(self(), MAKEINTRESOURCEW(IDD_ADDRESS_BAR), window_, barProc,
                              reinterpret_cast<LPARAM>(this));
    frame_ = CreateWindowExW(WS_EX_CONTROLPARENT, frameClass, L"",
                             WS_CHILD | WS_VISIBLE | WS_CLIPCHILDREN, 0, 0, 0, 0, window_, nullptr,
                             self(), nullptr);
    status_ =
        CreateWindowExW(0, STATUSCLASSNAMEW, L"", WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0,
                        0, window_, reinterpret_cast<HMENU>(IDC_STATUS_LINE), self(), nullptr);
    if (bar_ == nullptr || frame_ == nullptr || status_ == nullptr)
        throw std::runtime_error("the main window's parts cannot be created");
    SendMessageW(status_, WM_SETFONT, static_cast<WPARAM>(SendMessageW(bar_, WM_GETFONT, 0, 0)),
                 TRUE);
    SendDlgItemMessageW(bar_, IDC_ADDRESS, EM_LIMITTEXT, 64, 0);
    layOut();
}

// The panel keeps to its parent's size by itself.
void HostWindow::layOut() {
    if (status_ == nullptr) return;
    RECT area{};
    GetClientRect(window_, &area);
    SendMessageW(status_, WM_SIZE, 0, 0);
    const int above = heightOf(bar_), below = heightOf(status_);
    MoveWindow(bar_, 0, 0, area.right, above, TRUE);
    const LONG between = std::max<LONG>(0, area.bottom - above - below);
    MoveWindow(frame_, 0, above, area.right, between, TRUE);
}

void HostWindow::connectTo(std::string_view address) {
    SetDlgItemTextW(bar_, IDC_ADDRESS, toWide(address).c_str());
    connect();
}

void HostWindow::connect() {
    if (connected_) return;
    const std::string entered = windowText(GetDlgItem(bar_, IDC_ADDRESS));
    const std::string address(trimmed(entered));
    if (!isDeviceAddress(address)) {
        complain(address.empty() ? "请输入设备地址"
                                 : "设备地址不正确：请输入 IPv4 地址，例如 192.168.1.20");
        return;
    }
    const int result = plugin_.start(frame_, address);
    showStatus(startResultText(result, address));
    SetWindowTextW(window_, (title + (L" - " + toWide(address))).c_str());
    // The focus stays in the bar: the panel's first button writes to the device, and a person may
    // press Enter once too often.
    showConnected(true);
}

void HostWindow::disconnect() {
    if (!connected_) return;
    HCURSOR previous = SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32514)));  // the hourglass
    plugin_.stop();                                                               // takes a second
    SetCursor(previous);
    showConnected(false);
    SetWindowTextW(window_, title);
    showStatus("已断开");
}

void HostWindow::complain(std::string_view text) {
    showStatus(text);
    MessageBeep(MB_ICONWARNING);
    MessageBoxW(window_, toWide(text).c_str(), title, MB_OK | MB_ICONWARNING);
    SetFocus(GetDlgItem(bar_, IDC_ADDRESS));
    SendDlgItemMessageW(bar_, IDC_ADDRESS, EM_SETSEL, 0, -1);
}

void HostWindow::showStatus(std::string_view text) {
    SendMessageW(status_, SB_SETTEXTW, 0, reinterpret_cast<LPARAM>(toWide(text).c_str()));
}

// A control that is about to be disabled must not keep the focus: no key would reach anything.
void HostWindow::showConnected(bool connected) {
    connected_ = connected;
    EnableWindow(GetDlgItem(bar_, IDC_ADDRESS), !connected);
    EnableWindow(GetDlgItem(bar_, IDC_CONNECT), !connected);
    EnableWindow(GetDlgItem(bar_, IDC_DISCONNECT), connected);
    const int next = connected ? IDC_DISCONNECT : IDC_ADDRESS;
    SendMessageW(bar_, DM_SETDEFID, connected ? IDC_DISCONNECT : IDC_CONNECT, 0);
    SetFocus(GetDlgItem(bar_, next));
}

// To the panel and back, as the key F6 does between the panes of a window.
void HostWindow::switchFocus() {
    HWND panel = plugin_.panel();
    const bool toPanel = panel != nullptr && !IsChild(panel, GetFocus());
    HWND target = toPanel ? GetNextDlgTabItem(panel, nullptr, FALSE)
                          : GetDlgItem(bar_, connected_ ? IDC_DISCONNECT : IDC_ADDRESS);
    if (target != nullptr) SetFocus(target);
}

void HostWindow::onBarCommand(int id) {
    if (id == IDC_CONNECT) connect();
    if (id == IDC_DISCONNECT) disconnect();
}

INT_PTR CALLBACK HostWindow::barProc(HWND bar, UINT message, WPARAM wParam,
                                     LPARAM lParam) noexcept {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(bar, DWLP_USER, lParam);
        return FALSE;
    }
    auto* host = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(bar, DWLP_USER));
    if (host == nullptr || message != WM_COMMAND) return FALSE;
    try {
        host->onBarCommand(LOWORD(wParam));
    } catch (const std::exception& error) {
        MessageBoxW(bar, toWide(error.what()).c_str(), title, MB_OK | MB_ICONERROR);
    }
    return TRUE;
}

LRESULT CALLBACK HostWindow::windowProc(HWND window, UINT message, WPARAM wParam,
                                        LPARAM lParam) noexcept {
    if (message == WM_NCCREATE) {
        auto* host = static_cast<HostWindow*>(
            reinterpret_cast<const CREATESTRUCTW*>(lParam)->lpCreateParams);
        host->window_ = window;
        SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(host));
    }
    auto* host = reinterpret_cast<HostWindow*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (host == nullptr) return DefWindowProcW(window, message, wParam, lParam);
    try {
        return host->handle(message, wParam, lParam);
    } catch (const std::exception&) {
        return DefWindowProcW(window, message, wParam, lParam);  // out of memory
    }
}

LRESULT HostWindow::handle(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_GETFONT:
            return SendMessageW(bar_, WM_GETFONT, 0, 0);
        case WM_SIZE:
            layOut();
            return 0;
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {scaled(leastWidth),
                                                                     scaled(leastHeight)};
            return 0;
        case WM_CLOSE:
            // Disabled: a modal window of the panel is open and has to be answered first.
            if (!IsWindowEnabled(window_)) return 0;
            disconnect();
            DestroyWindow(window_);
            return 0;
        case WM_ENDSESSION:
            if (wParam != FALSE) disconnect();
            return 0;
        case WM_DESTROY:
            disconnect();
            PostQuitMessage(0);
            return 0;
        case WM_NCDESTROY: {
            HWND window = std::exchange(window_, nullptr);
            SetWindowLongPtrW(window, GWLP_USERDATA, 0);
            return DefWindowProcW(window, message, wParam, lParam);
        }
        default:
            return DefWindowProcW(window_, message, wParam, lParam);
    }
}

// Tab walks from the address bar into the panel, whose own keys take it back again.
void HostWindow::moveFocus(HWND from) {
    HWND next = GetNextDlgTabItem(window_, from, GetKeyState(VK_SHIFT) < 0);
    if (next != nullptr) SendMessageW(bar_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(next), TRUE);
}

// The keyboard of the address bar is the host's; that of the panel is the panel's own.
bool HostWindow::translate(MSG& message) {
    const bool pressed = message.message == WM_KEYDOWN;
    if (pressed && message.wParam == VK_F6 && IsChild(window_, message.hwnd)) {
        switchFocus();
        return true;
    }
    if (pressed && message.wParam == VK_TAB && IsChild(bar_, message.hwnd)) {
        moveFocus(message.hwnd);
        return true;
    }
    return IsDialogMessageW(bar_, &message) != FALSE;
}

void HostWindow::run() {
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (translate(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
}

}  // namespace korvane::host
