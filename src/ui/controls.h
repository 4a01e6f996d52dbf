#pragma once

#include <windows.h>

#include <array>
#include <commctrl.h>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "model/ipv4.h"

namespace korvane {

// Values that stand for one control of a dialog and speak for it in the dialog's terms. They own
// nothing and may be copied freely. Texts are UTF-8. On a control that does not exist every
// operation does nothing.
class Control {
  public:
    explicit Control(HWND window) : window_(window) {}

    HWND window() const { return window_; }
    std::string text() const;
    void setText(std::string_view text) const;
    void enable(bool enabled) const { EnableWindow(window_, enabled); }
    void show(bool visible) const { ShowWindow(window_, visible ? SW_SHOW : SW_HIDE); }
    void focus() const { SetFocus(window_); }
    // In pixels of the parent's client area.
    RECT area() const;
    void place(const RECT& area) const;
    // A length in pixels of a 96 dpi screen, in those of this window's screen.
    int scaled(int pixels) const;

  protected:
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return SendMessageW(window_, message, wParam, lParam);
    }
    // Between the two the control does not draw, so that a refill does not flicker.
    void holdDrawing() const { send(WM_SETREDRAW, FALSE); }
    void resumeDrawing() const;

  private:
    HWND window_;
};

class Static : public Control {
  public:
    using Control::Control;
    // Gives back what was shown before; that stays the caller's.
    HBITMAP setBitmap(HBITMAP bitmap) const;
    HBITMAP bitmap() const;
};

class Button : public Control {
  public:
    using Control::Control;
    // Of a check box or radio button.
    bool checked() const { return send(BM_GETCHECK) == BST_CHECKED; }
    void setChecked(bool checked) const {
        send(BM_SETCHECK, checked ? BST_CHECKED : BST_UNCHECKED);
    }
};
using CheckBox = Button;

class ListBox : public Control {
  public:
    using Control::Control;
    void setItems(std::span<const std::string_view> items) const;
    // Index of the selected item, or -1.
    int selected() const { return static_cast<int>(send(LB_GETCURSEL)); }
    void select(int index) const { send(LB_SETCURSEL, static_cast<WPARAM>(index)); }
};

// An unsorted drop-down list: the index of an item is the value it stands for.
class Combo : public Control {
  public:
    using Control::Control;
    void setItems(std::span<const std::string_view> items) const;
    int count() const { return static_cast<int>(send(CB_GETCOUNT)); }
    int selected() const { return static_cast<int>(send(CB_GETCURSEL)); }
    // An index that there is no item for clears the selection.
    void select(int index) const {
        send(CB_SETCURSEL, static_cast<WPARAM>(index < count() ? index : -1));
    }
};

class IpBox : public Control {
  public:
    using Control::Control;
    // Nothing while it is blank; a part that is blank alone counts as 0.
    std::optional<Ipv4> address() const;
    void setAddress(const std::optional<Ipv4>& address) const;
};

class Tab : public Control {
  public:
    using Control::Control;
    // Room around the titles, in pixels; before the tabs are appended.
    void setPadding(int x, int y) const { send(TCM_SETPADDING, 0, MAKELPARAM(x, y)); }
    void append(std::string_view text) const;
    int selected() const { return static_cast<int>(send(TCM_GETCURSEL)); }
    void select(int index) const { send(TCM_SETCURSEL, static_cast<WPARAM>(index)); }
};

class ProgressBar : public Control {
  public:
    using Control::Control;
    void setRange(int low, int high) const { send(PBM_SETRANGE32, static_cast<WPARAM>(low), high); }
    void setPosition(int position) const { send(PBM_SETPOS, static_cast<WPARAM>(position)); }
    int position() const { return static_cast<int>(send(PBM_GETPOS)); }
};

// How much of something is taken: a static control that its owner draws, for the looks of the
// system's own bars know no warning.
class LevelBar : public Control {
  public:
    using Control::Control;
    // In percent; what is above 100 shows as full, in the colour of a warning.
    void setLevel(int percent) const;
    int level() const { return static_cast<int>(GetWindowLongPtrW(window(), GWLP_USERDATA)); }
    // For WM_DRAWITEM of its owner.
    void draw(HDC surface) const;
};

class Tree : public Control {
  public:
    using Control::Control;
    using Control::holdDrawing;
    using Control::resumeDrawing;
    // From now on the tree draws into memory first and does not flicker.
    void drawBuffered() const;
    void clear() const { send(TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT)); }
    // After the parent's last child; nullptr is the root.
    HTREEITEM append(HTREEITEM parent, std::string_view text) const;
    HTREEITEM insert(const TVINSERTSTRUCTW& place) const {
        return reinterpret_cast<HTREEITEM>(
            send(TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&place)));
    }
    void expand(HTREEITEM item) const {
        send(TVM_EXPAND, TVE_EXPAND, reinterpret_cast<LPARAM>(item));
    }
    // The item that is related to `item` as TVGN_... says, or nullptr.
    HTREEITEM next(WPARAM relation, HTREEITEM item = nullptr) const {
        return reinterpret_cast<HTREEITEM>(
            send(TVM_GETNEXTITEM, relation, reinterpret_cast<LPARAM>(item)));
    }
    std::string itemText(HTREEITEM item) const;
};

}  // namespace korvane
