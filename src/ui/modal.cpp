#include "ui/modal.h"

#include <algorithm>
#include <utility>

#include "ui/dialog.h"

namespace korvane {
namespace {

// A hook has no argument of its own, and a modal call may be made from anywhere: hence statics,
// touched by the user-interface thread alone.
ModalScope* innermost = nullptr;
int scopeCount = 0;
unsigned dismissals = 0;
HHOOK windowHook = nullptr;
HWND rootWindow = nullptr;

// A file chooser listens to Cancel, a question to No; ending the dialog serves all others.
void dismissWindow(HWND window, bool own) {
    if (!own) {
        SendMessageW(window, WM_COMMAND, IDCANCEL, 0);
        SendMessageW(window, WM_COMMAND, IDNO, 0);
    }
    if (IsWindow(window)) EndDialog(window, IDCANCEL);
}

}  // namespace

void setModalRoot(HWND window) {
    rootWindow = window;
}

HWND modalRoot() {
    return rootWindow ? GetAncestor(rootWindow, GA_ROOT) : nullptr;
}

ModalScope::ModalScope(Shows shows)
    : shows_(shows), outer_(innermost), focus_(GetFocus()), generation_(dismissals) {
    innermost = this;
    if (scopeCount++ == 0)
        windowHook = SetWindowsHookExW(WH_CBT, &onWindowEvent, nullptr, GetCurrentThreadId());
}

ModalScope::~ModalScope() {
    innermost = outer_;
    if (--scopeCount == 0 && windowHook) {
        UnhookWindowsHookEx(windowHook);
        windowHook = nullptr;
    }
    restoreFocus();
}

// The host's window gets the focus back, which need not pass it on to where it was.
void ModalScope::restoreFocus() const {
    if (IsWindow(focus_) && GetAncestor(focus_, GA_ROOT) == GetActiveWindow()) SetFocus(focus_);
}

HWND ModalScope::owner() const {
    const ModalScope* scope = outer_;
    while (scope && scope->windows_.empty()) scope = scope->outer_;
    return scope ? scope->windows_.back() : modalRoot();
}

void ModalScope::check() const {
    if (generation_ != dismissals) throw Interrupted{};
}

int ModalScope::depth() {
    return scopeCount;
}

LRESULT CALLBACK ModalScope::onWindowEvent(int code, WPARAM window, LPARAM data) {
    const auto handle = reinterpret_cast<HWND>(window);
    try {
        if (code == HCBT_CREATEWND && innermost)
            innermost->noteCreated(handle, *reinterpret_cast<CBT_CREATEWNDW*>(data)->lpcs);
        if (code == HCBT_DESTROYWND)
            for (ModalScope* scope = innermost; scope; scope = scope->outer_)
                scope->noteDestroyed(handle);
    } catch (...) {
        // Out of memory: the window is not noted and has to be closed by hand.
        return CallNextHookEx(windowHook, code, window, data);
    }
    return CallNextHookEx(windowHook, code, window, data);
}

// The first dialog window after the scope began is the one it was made for; the host may open
// others from its own message handlers meanwhile, and those are not ours to close.
void ModalScope::noteCreated(HWND window, const CREATESTRUCTW& how) {
    if (shows_ == Shows::Menu || (how.style & WS_CHILD) || !isDialogWindow(window)) return;
    const bool owned = std::ranges::find(windows_, how.hwndParent) != windows_.end();
    if (windows_.empty() || owned) windows_.push_back(window);
}

void ModalScope::noteDestroyed(HWND window) {
    std::erase(windows_, window);
}

// Once only: a chooser of the system that has been cancelled must not hear of it again.
void ModalScope::dismiss() {
    if (std::exchange(dismissed_, true)) return;
    const std::vector<HWND> open(windows_.rbegin(), windows_.rend());
    for (HWND window : open) {
        const auto module = reinterpret_cast<HINSTANCE>(GetWindowLongPtrW(window, GWLP_HINSTANCE));
        dismissWindow(window, module == moduleInstance());
    }
}

void dismissModals() {
    ++dismissals;
    if (innermost) EndMenu();
    for (ModalScope* scope = innermost; scope; scope = scope->outer_) {
        scope->dismiss();
        // A loop whose window was destroyed under it notices with its next message.
        PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
    }
}

}  // namespace korvane
