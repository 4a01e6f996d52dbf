#include "ui/scrolling.h"

#include <algorithm>

namespace korvane {
namespace {

constexpr int lineStep = 24;  // pixels

SCROLLINFO scrollInfo(HWND window, int bar) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    GetScrollInfo(window, bar, &info);
    return info;
}

void setRange(HWND window, int bar, LONG content, LONG visible) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_RANGE | SIF_PAGE;
    info.nMax = content - 1;
    info.nPage = static_cast<UINT>(visible);
    SetScrollInfo(window, bar, &info, TRUE);
}

RECT clientArea(HWND window) {
    RECT area{};
    GetClientRect(window, &area);
    return area;
}

int requested(const SCROLLINFO& info, WPARAM request) {
    const int page = static_cast<int>(info.nPage);
    switch (LOWORD(request)) {
        case SB_LINEUP:
            return info.nPos - lineStep;
        case SB_LINEDOWN:
            return info.nPos + lineStep;
        case SB_PAGEUP:
            return info.nPos - page;
        case SB_PAGEDOWN:
            return info.nPos + page;
        case SB_THUMBTRACK:
        case SB_THUMBPOSITION:
            return info.nTrackPos;
        case SB_TOP:
            return info.nMin;
        case SB_BOTTOM:
            return info.nMax;
        default:
            return info.nPos;
    }
}

}  // namespace

// A bar that appears takes room from the other direction, so the client area is asked for anew.
RECT placeScrolled(HWND window, SIZE least) {
    setRange(window, SB_VERT, least.cy, clientArea(window).bottom);
    setRange(window, SB_HORZ, least.cx, clientArea(window).right);
    setRange(window, SB_VERT, least.cy, clientArea(window).bottom);
    const RECT client = clientArea(window);
    const int left = -scrollInfo(window, SB_HORZ).nPos, top = -scrollInfo(window, SB_VERT).nPos;
    return {left, top, left + std::max(client.right, least.cx),
            top + std::max(client.bottom, least.cy)};
}

void scrollBar(HWND window, int bar, WPARAM request) {
    SCROLLINFO info = scrollInfo(window, bar);
    const int wanted = requested(info, request);
    info.fMask = SIF_POS;
    info.nPos = wanted;
    SetScrollInfo(window, bar, &info, TRUE);
}

}  // namespace korvane
