#pragma once

#include <windows.h>

#include <vector>

#include "ui/module.h"

namespace korvane {

// Thrown out of a modal call whose panel was taken down while it showed. It carries the flow that
// waited for an answer past everything it would have done with it; only the window procedure at
// the flow's root catches it. No std::exception, so that no handler of errors mistakes it for one.
struct Interrupted {};

// The window whose top-level window the module's modal windows lie over; nullptr: over none.
void setModalRoot(HWND window);
HWND modalRoot();  // the top-level window

// Surrounds one modal call of this module (own dialog, message box, file chooser, popup menu) and
// knows the window that it shows. Scopes nest; all belong to the one user-interface thread.
class ModalScope {
  public:
    // A popup menu is no window that the scope would end: dialogs that come up meanwhile are
    // others'.
    enum class Shows { Dialog, Menu };

    explicit ModalScope(Shows shows = Shows::Dialog);
    ~ModalScope();
    ModalScope(const ModalScope&) = delete;
    ModalScope& operator=(const ModalScope&) = delete;

    // What the modal call is to be owned by, which it disables while it lasts: the modal window of
    // this module that is open already, the innermost one, else the root.
    HWND owner() const;

    // To be called when the modal call has returned: throws Interrupted if dismissModals() was
    // called since this scope began.
    void check() const;

    // The number of scopes there are: code that shows something modal is on the stack.
    static int depth();

  private:
    friend void dismissModals();
    static LRESULT CALLBACK onWindowEvent(int code, WPARAM window, LPARAM data);
    void noteCreated(HWND window, const CREATESTRUCTW& how);
    void noteDestroyed(HWND window);
    void dismiss();
    void restoreFocus() const;

    ActivationScope activation_;
    Shows shows_;
    ModalScope* outer_;
    HWND focus_;  // before the scope began
    unsigned generation_;
    bool dismissed_ = false;
    std::vector<HWND> windows_;  // the one shown first, then what it opened itself
};

// Ends every modal window of this module, innermost first, each as if it had been cancelled, and
// a popup menu under a scope. The calls that show them return once control is back in their message
// loops.
void dismissModals();

}  // namespace korvane
