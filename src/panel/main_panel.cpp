#include "panel/main_panel.h"

#include <stdexcept>

#include "resources/ids.h"
#include "ui/modal.h"

namespace korvane {
namespace {

// The dialog that the control which has the focus belongs to; not every control is a direct child.
HWND focusedDialog() {
    HWND window = GetFocus();
    while (window && !isDialogWindow(window)) window = GetAncestor(window, GA_PARENT);
    return window;
}

}  // namespace

PanelWindow::PanelWindow(DeviceManager& manager, const PageMaker& makePages,
                         std::function<void()> gone)
    : Dialog(IDD_MAIN_PANEL), body_(manager, makePages), gone_(std::move(gone)) {}

bool PanelWindow::onInit() {
    setModalRoot(hwnd());
    if (!body_.create(hwnd())) throw std::runtime_error("the panel's body was refused");
    RECT body{};
    GetClientRect(body_.hwnd(), &body);
    leastBody_ = {body.right, body.bottom};
    follower_.emplace(hwnd());
    keyboard_.emplace(hwnd());
    show(true);
    return false;
}

void PanelWindow::onSize(int, int) {
    placeBody();
}

void PanelWindow::placeBody() {
    if (body_.hwnd()) body_.place(placeScrolled(hwnd(), leastBody_));
}

void PanelWindow::showFocused() {
    HWND control = GetFocus();
    if (!IsChild(hwnd(), control)) return;
    RECT area{};
    GetWindowRect(control, &area);
    MapWindowPoints(nullptr, hwnd(), reinterpret_cast<POINT*>(&area), 2);
    scrollIntoView(hwnd(), area);
}

// The wheel's turns come up from the control that has the focus and has no use for them.
std::optional<INT_PTR> PanelWindow::onMessage(UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_HSCROLL:
        case WM_VSCROLL:
            scrollBar(hwnd(), message == WM_HSCROLL ? SB_HORZ : SB_VERT, wParam);
            break;
        case WM_MOUSEWHEEL:
        case WM_MOUSEHWHEEL:
            if (!wheel_.turn(hwnd(), message, wParam)) return std::nullopt;
            break;
        case KeyboardHook::focusMoved:
            showFocused();
            break;
        default:
            return std::nullopt;
    }
    placeBody();
    return TRUE;
}

// The system sends the commands of keys to the outermost dialog. A button's goes on to the dialog
// that the button is in; Enter and Esc, which nothing here takes, to the one that has the focus,
// even where the system names a control: the parts of an address box have numbers like theirs.
bool PanelWindow::onCommand(int id, int notification, HWND control) {
    if (id == IDOK || id == IDCANCEL) control = nullptr;
    HWND target = control ? GetParent(control) : focusedDialog();
    if (!target || !IsChild(hwnd(), target)) return false;
    SendMessageW(target, WM_COMMAND, MAKEWPARAM(id, notification),
                 reinterpret_cast<LPARAM>(control));
    return true;
}

void PanelWindow::onDestroy() {
    dismissModals();
    setModalRoot(nullptr);
    keyboard_.reset();
    follower_.reset();
    gone_();
}

bool MainPanel::create(HWND parent) {
    if (hwnd() || !parent) return false;
    retire();
    window_ = std::make_unique<PanelWindow>(manager_, makePages_, [this] { handle_ = nullptr; });
    if (!window_->create(parent)) return false;
    handle_ = window_->hwnd();
    return true;
}

void MainPanel::destroy() {
    dismissModals();
    if (window_) window_->destroy();
}

void MainPanel::refresh() {
    if (hwnd()) window_->refresh();
}

void MainPanel::retire() {
    if (ModalScope::depth() > 0) {
        if (window_) retired_.push_back(std::move(window_));
        return;
    }
    retired_.clear();
    window_.reset();
}

}  // namespace korvane
