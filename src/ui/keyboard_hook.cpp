#include "ui/keyboard_hook.h"

namespace korvane {
namespace {

// Marks the dialog on its window: a hook procedure has no argument of its own.
constexpr const wchar_t* markName = L"KorvaneKeyboard";

HWND markedAncestor(HWND window) {
    while (window && !GetPropW(window, markName)) window = GetAncestor(window, GA_PARENT);
    return window;
}

bool wantsTab(MSG& message) {
    const auto code = SendMessageW(message.hwnd, WM_GETDLGCODE, message.wParam,
                                   reinterpret_cast<LPARAM>(&message));
    return (code & (DLGC_WANTTAB | DLGC_WANTALLKEYS)) != 0;
}

// The widest window that dialog keys walk through from here: so Tab leaves the panel for the
// host's own controls, where the host has any, and does not run in circles.
HWND walkedWindow(HWND dialog) {
    HWND window = dialog;
    while (GetWindowLongW(window, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) {
        HWND parent = GetAncestor(window, GA_PARENT);
        if (!parent || parent == GetDesktopWindow()) break;
        window = parent;
    }
    return window;
}

void moveFocus(HWND dialog, HWND from) {
    const bool backwards = GetKeyState(VK_SHIFT) < 0;
    HWND to = GetNextDlgTabItem(walkedWindow(dialog), from, backwards);
    if (to) SendMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(to), TRUE);
}

// A menu that is open, or a window that is being moved or sized, has the keys, whoever has the
// focus.
bool systemTakesKeys() {
    constexpr DWORD modes =
        GUI_INMENUMODE | GUI_SYSTEMMENUMODE | GUI_POPUPMENUMODE | GUI_INMOVESIZE;
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    return GetGUIThreadInfo(GetCurrentThreadId(), &info) && (info.flags & modes) != 0;
}

bool isDialogKey(WPARAM key) {
    switch (key) {
        case VK_TAB:
            return GetKeyState(VK_CONTROL) >= 0;
        case VK_RETURN:
        case VK_EXECUTE:
        case VK_LEFT:
        case VK_RIGHT:
        case VK_UP:
        case VK_DOWN:
            return true;
        default:
            return false;
    }
}

BOOL CALLBACK tellMarked(HWND window, LPARAM) {
    if (GetPropW(window, markName)) PostMessageW(window, KeyboardHook::focusMoved, 0, 0);
    return TRUE;
}

bool act(HWND dialog, MSG& message) {
    if (message.wParam != VK_TAB) return IsDialogMessageW(dialog, &message) != FALSE;
    if (wantsTab(message)) return false;
    moveFocus(dialog, message.hwnd);
    return true;
}

// True when the key was one of a dialog's and has been acted upon. All others stay with the host,
// which may have accelerators of its own, and may move the focus from its controls to ours.
bool take(MSG& message) {
    if (message.message != WM_KEYDOWN || !isDialogKey(message.wParam)) return false;
    if (systemTakesKeys()) return false;
    HWND dialog = markedAncestor(message.hwnd);
    if (!dialog) {
        EnumChildWindows(GetAncestor(message.hwnd, GA_ROOT), &tellMarked, 0);
        return false;
    }
    const HWND before = GetFocus();
    const bool taken = act(dialog, message);
    if (GetFocus() != before) SendMessageW(dialog, KeyboardHook::focusMoved, 0, 0);
    return taken;
}

LRESULT CALLBACK onMessageTaken(int code, WPARAM removed, LPARAM data) {
    auto& message = *reinterpret_cast<MSG*>(data);
    // Acted upon already; the host's loop is left a message that means nothing.
    if (code == HC_ACTION && removed == PM_REMOVE && take(message)) message.message = WM_NULL;
    return CallNextHookEx(nullptr, code, removed, data);
}

}  // namespace

KeyboardHook::KeyboardHook(HWND dialog)
    : dialog_(dialog),
      hook_(SetWindowsHookExW(WH_GETMESSAGE, &onMessageTaken, nullptr, GetCurrentThreadId())) {
    SetPropW(dialog_, markName, hook_);
}

KeyboardHook::~KeyboardHook() {
    if (hook_) UnhookWindowsHookEx(hook_);
    RemovePropW(dialog_, markName);
}

}  // namespace korvane
