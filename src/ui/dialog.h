#pragma once

#include <windows.h>

#include <exception>
#include <optional>

namespace korvane {

// Whether the window is a dialog of any module.
bool isDialogWindow(HWND window);

// A dialog made from a resource of this module, modal, modeless or a child of another one.
// Derived classes override the handlers. What they throw never reaches the system: it is shown as
// a message, or, while the dialog is being initialised, comes out of create() or showModal().
class Dialog {
  public:
    explicit Dialog(int resourceId) : resourceId_(resourceId) {}
    virtual ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    // nullptr while there is no window.
    HWND hwnd() const { return hwnd_; }

    // Makes a modeless dialog or a child page; false when there already is a window or the system
    // refuses one.
    bool create(HWND parent);
    // Shows the dialog, over what is modal already (modal.h), until end() and returns its result,
    // or -1 when it could not be made. Throws Interrupted when the panel was taken down meanwhile.
    int showModal();
    void destroy();

    void show(bool visible);
    // In pixels of the parent's client area.
    void place(const RECT& area);

  protected:
    // True leaves the focus to the system, which gives it to the first control.
    virtual bool onInit() { return true; }
    // True when handled. A modal dialog left to itself ends with IDOK and IDCANCEL.
    virtual bool onCommand(int id, int notification, HWND control);
    // The result to give back, or nothing when not handled.
    virtual std::optional<LRESULT> onNotify(const NMHDR& header);
    virtual void onTimer(UINT_PTR timer);
    virtual void onSize(int width, int height);
    virtual void onDestroy();
    // The answer to a message that another window sent, or nothing when it is not for this one.
    virtual std::optional<LRESULT> onSent(UINT message, WPARAM wParam, LPARAM lParam);
    // Any other message: what the dialog procedure is to return, or nothing when not handled.
    virtual std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam);

    // Ends a modal dialog.
    void end(int result);

    // The wrapper C (see controls.h) of one of this dialog's controls.
    template <class C>
    C control(int id) const {
        return C(GetDlgItem(hwnd_, id));
    }

    // A length in pixels of a 96 dpi screen, in those of this window's screen.
    int scaled(int pixels) const;

  private:
    static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wParam,
                                      LPARAM lParam) noexcept;
    INT_PTR handle(UINT message, WPARAM wParam, LPARAM lParam);
    INT_PTR initialise(HWND window) noexcept;
    void rethrowInitError();

    int resourceId_;
    HWND hwnd_ = nullptr;
    bool modal_ = false;
    std::exception_ptr initError_;
};

}  // namespace korvane
