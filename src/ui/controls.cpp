#include "ui/controls.h"

#include "text/text.h"
#include <algorithm>

namespace korvane {

std::string Control::text() const {
    const int length = GetWindowTextLengthW(window_);
    std::wstring wide(static_cast<std::size_t>(length) + 1, L'\0');
    wide.resize(static_cast<std::size_t>(GetWindowTextW(window_, wide.data(), length + 1)));
    return toUtf8(wide);
}

void Control::setText(std::string_view text) const {
    SetWindowTextW(window_, toWide(text).c_str());
}

RECT Control::area() const {
    RECT area{};
    GetWindowRect(window_, &area);
    MapWindowPoints(nullptr, GetParent(window_), reinterpret_cast<POINT*>(&area), 2);
    return area;
}

void Control::place(const RECT& area) const {
    SetWindowPos(window_, nullptr, area.left, area.top, area.right - area.left,
                 area.bottom - area.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

int Control::scaled(int pixels) const {
    constexpr int usualDpi = 96;
    HDC screen = GetDC(window_);
    const int dpi = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(window_, screen);
    return MulDiv(pixels, dpi, usualDpi);
}

void Control::resumeDrawing() const {
    send(WM_SETREDRAW, TRUE);
    InvalidateRect(window_, nullptr, TRUE);
}

HBITMAP Static::setBitmap(HBITMAP bitmap) const {
    return reinterpret_cast<HBITMAP>(
        send(STM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap)));
}

HBITMAP Static::bitmap() const {
    return reinterpret_cast<HBITMAP>(send(STM_GETIMAGE, IMAGE_BITMAP));
}

void ListBox::setItems(std::span<const std::string_view> items) const {
    holdDrawing();
    send(LB_RESETCONTENT);
    for (const std::string_view item : items)
        send(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(toWide(item).c_str()));
    resumeDrawing();
}

void Combo::setItems(std::span<const std::string_view> items) const {
    send(CB_RESETCONTENT);
    for (const std::string_view item : items)
        send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(toWide(item).c_str()));
}

std::optional<Ipv4> IpBox::address() const {
    if (send(IPM_ISBLANK)) return std::nullopt;
    DWORD packed = 0;
    send(IPM_GETADDRESS, 0, reinterpret_cast<LPARAM>(&packed));
    return Ipv4{static_cast<std::uint8_t>(packed >> 24), static_cast<std::uint8_t>(packed >> 16),
                static_cast<std::uint8_t>(packed >> 8), static_cast<std::uint8_t>(packed)};
}

void IpBox::setAddress(const std::optional<Ipv4>& address) const {
    if (!address) {
        send(IPM_CLEARADDRESS);
        return;
    }
    const auto& [a, b, c, d] = *address;
    send(IPM_SETADDRESS, 0, MAKEIPADDRESS(a, b, c, d));
}

void Tab::append(std::string_view text) const {
    std::wstring wide = toWide(text);
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = wide.data();
    const auto count = static_cast<WPARAM>(send(TCM_GETITEMCOUNT));
    send(TCM_INSERTITEMW, count, reinterpret_cast<LPARAM>(&item));
}

void LevelBar::setLevel(int percent) const {
    SetWindowLongPtrW(window(), GWLP_USERDATA, percent);
    InvalidateRect(window(), nullptr, FALSE);
}

void LevelBar::draw(HDC surface) const {
    constexpr COLORREF taken = RGB(46, 139, 87), warning = RGB(205, 38, 38);
    RECT area{};
    GetClientRect(window(), &area);
    FillRect(surface, &area, GetSysColorBrush(COLOR_WINDOW));
    RECT filled = area;
    filled.right = MulDiv(area.right, std::min(level(), 100), 100);
    SetDCBrushColor(surface, level() > 100 ? warning : taken);
    FillRect(surface, &filled, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
    FrameRect(surface, &area, GetSysColorBrush(COLOR_BTNSHADOW));
}

HTREEITEM Tree::append(HTREEITEM parent, std::string_view text) const {
    std::wstring wide = toWide(text);
    TVINSERTSTRUCTW place{};
    place.hParent = parent ? parent : TVI_ROOT;
    place.hInsertAfter = TVI_LAST;
    place.item.mask = TVIF_TEXT;
    place.item.pszText = wide.data();
    return insert(place);
}

void Tree::drawBuffered() const {
    send(TVM_SETEXTENDEDSTYLE, TVS_EX_DOUBLEBUFFER, TVS_EX_DOUBLEBUFFER);
}

std::string Tree::itemText(HTREEITEM item) const {
    std::array<wchar_t, 512> buffer{};
    TVITEMW request{};
    request.mask = TVIF_TEXT | TVIF_HANDLE;
    request.hItem = item;
    request.pszText = buffer.data();
    request.cchTextMax = static_cast<int>(buffer.size());
    if (!send(TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&request))) return {};
    return toUtf8(request.pszText);
}

}  // namespace korvane
