#pragma once

#include <windows.h>

namespace korvane {

// Gives a modeless dialog its keys in a host whose message loop does not call IsDialogMessage:
// Tab walks the controls, arrows a group, Enter presses the focused button. It watches the messages
// that the thread takes from its queue, as long as it lives.
class KeyboardHook {
  public:
    // The dialog gets this message when a key may have moved the focus to another of its controls.
    static constexpr UINT focusMoved = WM_APP;

    // `dialog` belongs to the calling thread.
    explicit KeyboardHook(HWND dialog);
    ~KeyboardHook();
    KeyboardHook(const KeyboardHook&) = delete;
    KeyboardHook& operator=(const KeyboardHook&) = delete;

  private:
    HWND dialog_;
    HHOOK hook_;
};

}  // namespace korvane
