#include "ui/parent_follower.h"

#include <commctrl.h>

namespace korvane {

ParentFollower::ParentFollower(HWND child) : child_(child), parent_(GetParent(child)) {
    fill();
    SetWindowSubclass(parent_, &onParentMessage, reinterpret_cast<UINT_PTR>(this),
                      reinterpret_cast<DWORD_PTR>(this));
}

ParentFollower::~ParentFollower() {
    RemoveWindowSubclass(parent_, &onParentMessage, reinterpret_cast<UINT_PTR>(this));
}

LRESULT CALLBACK ParentFollower::onParentMessage(HWND parent, UINT message, WPARAM wParam,
                                                 LPARAM lParam, UINT_PTR, DWORD_PTR self) {
    auto* follower = reinterpret_cast<ParentFollower*>(self);
    const LRESULT result = DefSubclassProc(parent, message, wParam, lParam);
    // After the host, which may have placed the child itself.
    if (message == WM_SIZE && wParam != SIZE_MINIMIZED && follower->isWhereItWasPut())
        follower->fill();
    return result;
}

void ParentFollower::fill() {
    GetClientRect(parent_, &filled_);
    SetWindowPos(child_, nullptr, 0, 0, filled_.right, filled_.bottom,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

bool ParentFollower::isWhereItWasPut() const {
    RECT area{};
    GetWindowRect(child_, &area);
    MapWindowPoints(nullptr, parent_, reinterpret_cast<POINT*>(&area), 2);
    return EqualRect(&area, &filled_);
}

}  // namespace korvane
