#pragma once

#include <windows.h>

namespace korvane {

// For a window that shows one content, which takes the whole client area but never gets smaller
// than `least` pixels: sets the window's scroll bars, which show as far as they are needed, and
// returns where the content is to be placed.
RECT placeScrolled(HWND window, SIZE least);

// Moves a bar (SB_HORZ or SB_VERT) as the wParam of WM_HSCROLL or WM_VSCROLL asks.
void scrollBar(HWND window, int bar, WPARAM request);

// Moves the bars as little as brings `area`, in pixels of the client area, into view, with a
// margin. Of what is larger than the view, the beginning shows.
void scrollIntoView(HWND window, const RECT& area);

// Adds up the turns of the mouse wheel: a fine wheel tells each in pieces of a notch.
class WheelScrolling {
  public:
    // Scrolls as WM_MOUSEWHEEL (with Shift, horizontally) or WM_MOUSEHWHEEL asks. False when the
    // window shows all that there is in that direction: then others may have the message.
    bool turn(HWND window, UINT message, WPARAM wParam);

  private:
    int turned_[2]{};  // by bar; pixels not yet scrolled, times WHEEL_DELTA
};

}  // namespace korvane
