#include "ui/scrolling.h"

#include <algorithm>

namespace korvane {
namespace {

constexpr int lineStep = 24;   // pixels
constexpr int viewMargin = 8;  // pixels

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

void setPosition(HWND window, int bar, int position) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS;
    info.nPos = position;
    SetScrollInfo(window, bar, &info, TRUE);
}

// `begin` and `end` are what is to be seen, from the view's beginning on.
void reveal(HWND window, int bar, int begin, int end) {
    const SCROLLINFO info = scrollInfo(window, bar);
    const int excess = std::max(end + viewMargin - static_cast<int>(info.nPage), 0);
    setPosition(window, bar, info.nPos + std::min(excess, begin - viewMargin));
}

// In pixels. More lines than a page holds, as which the setting also says "a page", are a page.
int notchStep(int page) {
    UINT lines = 3;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    const auto linesOfPage = static_cast<UINT>(page / lineStep);
    return lines > linesOfPage ? page : static_cast<int>(lines) * lineStep;
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
    setPosition(window, bar, requested(scrollInfo(window, bar), request));
}

void scrollIntoView(HWND window, const RECT& area) {
    reveal(window, SB_HORZ, area.left, area.right);
    reveal(window, SB_VERT, area.top, area.bottom);
}

// A wheel turned away from its user scrolls up or to the left, one tilted to the right, right.
bool WheelScrolling::turn(HWND window, UINT message, WPARAM wParam) {
    const bool tilted = message == WM_MOUSEHWHEEL;
    const int bar = tilted || (LOWORD(wParam) & MK_SHIFT) ? SB_HORZ : SB_VERT;
    const SCROLLINFO info = scrollInfo(window, bar);
    const int page = static_cast<int>(info.nPage);
    if (page > info.nMax) return false;
    const int delta = GET_WHEEL_DELTA_WPARAM(wParam);
    int& turned = turned_[bar];
    turned += (tilted ? delta : -delta) * notchStep(page);
    setPosition(window, bar, info.nPos + turned / WHEEL_DELTA);
    turned %= WHEEL_DELTA;
    return true;
}

}  // namespace korvane
