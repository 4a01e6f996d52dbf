#pragma once

#include <windows.h>

namespace korvane {

// For a window that shows one content, which takes the whole client area but never gets smaller
// than `least` pixels: sets the window's scroll bars, which show as far as they are needed, and
// returns where the content is to be placed.
RECT placeScrolled(HWND window, SIZE least);

// Moves a bar (SB_HORZ or SB_VERT) as the wParam of WM_HSCROLL or WM_VSCROLL asks.
void scrollBar(HWND window, int bar, WPARAM request);

}  // namespace korvane
