#include <windows.h>

#include <iterator>

#include "robot.h"
#include "text/text.h"

namespace korvane::host {

namespace {

constexpr int cellRoom = 512;                 // characters of one cell, item or title
constexpr UINT getMenuHandle = 0x1E1;         // MN_GETHMENU
constexpr const char* popupClass = "#32768";  // the class of every popup menu

std::vector<std::string> readItems(const Robot& robot, HWND control, UINT count, UINT length,
                                   UINT get) {
    std::vector<std::string> items;
    const LRESULT total = robot.send(control, count);
    for (LRESULT i = 0; i < total; ++i) {
        const auto index = static_cast<WPARAM>(i);
        const LRESULT size = robot.send(control, length, index);
        std::wstring buffer(static_cast<std::size_t>(size) + 1, L'\0');
        robot.send(control, get, index, buffer.data());
        items.push_back(toUtf8(buffer.c_str()));
    }
    return items;
}

std::string listCell(const Robot& robot, HWND listView, int row, int column) {
    wchar_t buffer[cellRoom] = {};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = buffer;
    item.cchTextMax = cellRoom;
    robot.send(listView, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), &item);
    return toUtf8(item.pszText);
}

std::string menuText(HMENU menu, UINT position) {
    wchar_t buffer[cellRoom] = {};
    GetMenuStringW(menu, position, buffer, cellRoom, MF_BYPOSITION);
    return toUtf8(buffer);
}

void setRowState(const Robot& robot, HWND listView, int row, UINT state, UINT mask) {
    LVITEMW item{};
    item.state = state;
    item.stateMask = mask;
    robot.send(listView, LVM_SETITEMSTATE, static_cast<WPARAM>(row), &item);
}

}  // namespace

void Robot::notifyParent(HWND control, int code) const {
    const auto id = static_cast<WORD>(GetDlgCtrlID(control));
    send(GetParent(control), WM_COMMAND, MAKEWPARAM(id, code), control);
}

bool Robot::isChecked(HWND button) const {
    return send(button, BM_GETCHECK) == BST_CHECKED;
}

std::vector<std::string> Robot::comboItems(HWND combo) const {
    return readItems(*this, combo, CB_GETCOUNT, CB_GETLBTEXTLEN, CB_GETLBTEXT);
}

int Robot::comboSelection(HWND combo) const {
    return static_cast<int>(send(combo, CB_GETCURSEL));
}

// The control tells its parent only about a person's choice, so the robot does.
void Robot::selectCombo(HWND combo, int index) const {
    send(combo, CB_SETCURSEL, static_cast<WPARAM>(index));
    notifyParent(combo, CBN_SELCHANGE);
}

std::vector<std::string> Robot::listBoxItems(HWND listBox) const {
    return readItems(*this, listBox, LB_GETCOUNT, LB_GETTEXTLEN, LB_GETTEXT);
}

void Robot::selectListBox(HWND listBox, int index) const {
    send(listBox, LB_SETCURSEL, static_cast<WPARAM>(index));
    notifyParent(listBox, LBN_SELCHANGE);
}

std::vector<std::string> Robot::listColumns(HWND listView) const {
    auto* header = reinterpret_cast<HWND>(send(listView, LVM_GETHEADER));
    const LRESULT count = header == nullptr ? 0 : send(header, HDM_GETITEMCOUNT);
    std::vector<std::string> titles;
    for (LRESULT i = 0; i < count; ++i) {
        wchar_t buffer[cellRoom] = {};
        HDITEMW item{};
        item.mask = HDI_TEXT;
        item.pszText = buffer;
        item.cchTextMax = cellRoom;
        send(header, HDM_GETITEMW, static_cast<WPARAM>(i), &item);
        titles.push_back(toUtf8(item.pszText));
    }
    return titles;
}

std::vector<std::vector<std::string>> Robot::listRows(HWND listView, int columns) const {
    if (columns == 0) columns = static_cast<int>(listColumns(listView).size());
    std::vector<std::vector<std::string>> rows;
    const int count = static_cast<int>(send(listView, LVM_GETITEMCOUNT));
    for (int row = 0; row < count; ++row) {
        std::vector<std::string>& cells = rows.emplace_back();
        for (int column = 0; column < columns; ++column)
            cells.push_back(listCell(*this, listView, row, column));
    }
    return rows;
}

int Robot::listSelection(HWND listView) const {
    return static_cast<int>(
        send(listView, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LPARAM{LVNI_SELECTED}));
}

bool Robot::isRowChecked(HWND listView, int row) const {
    const LRESULT state =
        send(listView, LVM_GETITEMSTATE, static_cast<WPARAM>(row), LPARAM{LVIS_STATEIMAGEMASK});
    return static_cast<UINT>(state) == INDEXTOSTATEIMAGEMASK(2);
}

void Robot::selectRow(HWND listView, int row) const {
    clearSelection(listView);
    setRowState(*this, listView, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

void Robot::clearSelection(HWND listView) const {
    setRowState(*this, listView, -1, 0, LVIS_SELECTED);
}

void Robot::checkRow(HWND listView, int row, bool checked) const {
    setRowState(*this, listView, row, INDEXTOSTATEIMAGEMASK(checked ? 2 : 1), LVIS_STATEIMAGEMASK);
}

void Robot::clickRow(HWND listView, int row, const std::vector<UINT>& messages, bool below) const {
    RECT at{LVIR_LABEL, 0, 0, 0};
    if (row >= 0) {
        send(listView, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), LPARAM{FALSE});
        send(listView, LVM_GETITEMRECT, static_cast<WPARAM>(row), &at);
    } else {
        GetClientRect(listView, &at);
        if (below) at.top = at.bottom - 8;
    }
    const LPARAM point = MAKELPARAM(at.left + 4, (at.top + at.bottom) / 2);
    for (UINT message : messages) PostMessageW(listView, message, 0, point);
}

void Robot::doubleClickRow(HWND listView, int row) const {
    selectRow(listView, row);
    clickRow(listView, row, {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP}, false);
}

void Robot::rightClickRow(HWND listView, int row) const {
    if (row >= 0) selectRow(listView, row);
    clickRow(listView, row, {WM_RBUTTONDOWN, WM_RBUTTONUP}, row < 0);
}

std::vector<std::string> Robot::tabTitles(HWND tab) const {
    std::vector<std::string> titles;
    const LRESULT count = send(tab, TCM_GETITEMCOUNT);
    for (LRESULT i = 0; i < count; ++i) {
        wchar_t buffer[cellRoom] = {};
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = buffer;
        item.cchTextMax = cellRoom;
        send(tab, TCM_GETITEMW, static_cast<WPARAM>(i), &item);
        titles.push_back(toUtf8(item.pszText));
    }
    return titles;
}

// Moving the focus selects as a person does, with the notifications before and after.
void Robot::selectTab(HWND tab, int index) const {
    send(tab, TCM_SETCURFOCUS, static_cast<WPARAM>(index));
}

void Robot::addTreeRows(HWND tree, HTREEITEM first, int depth, std::vector<TreeRow>& rows) const {
    const auto next = [&](WPARAM which, HTREEITEM from) {
        return reinterpret_cast<HTREEITEM>(
            send(tree, TVM_GETNEXTITEM, which, reinterpret_cast<LPARAM>(from)));
    };
    for (HTREEITEM item = first; item != nullptr; item = next(TVGN_NEXT, item)) {
        wchar_t buffer[cellRoom] = {};
        TVITEMW data{};
        data.mask = TVIF_TEXT;
        data.hItem = item;
        data.pszText = buffer;
        data.cchTextMax = cellRoom;
        send(tree, TVM_GETITEMW, 0, &data);
        rows.push_back({depth, toUtf8(data.pszText), item});
        addTreeRows(tree, next(TVGN_CHILD, item), depth + 1, rows);
    }
}

std::vector<TreeRow> Robot::treeRows(HWND tree) const {
    std::vector<TreeRow> rows;
    const auto root = send(tree, TVM_GETNEXTITEM, TVGN_ROOT);
    addTreeRows(tree, reinterpret_cast<HTREEITEM>(root), 0, rows);
    return rows;
}

void Robot::selectTreeItem(HWND tree, HTREEITEM item) const {
    send(tree, TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(item));
}

HWND Robot::popupWindow() const {
    return firstTop([&](HWND window) { return className(window) == popupClass; });
}

std::vector<PopupItem> Robot::waitPopup() const {
    HWND window = waitFor("waited for a popup menu", [&] { return popupWindow(); });
    auto* menu = reinterpret_cast<HMENU>(send(window, getMenuHandle));
    std::vector<PopupItem> items;
    const int count = GetMenuItemCount(menu);
    for (int i = 0; i < count; ++i) {
        const auto position = static_cast<UINT>(i);
        const UINT state = GetMenuState(menu, position, MF_BYPOSITION);
        items.push_back({menuText(menu, position), (state & (MF_GRAYED | MF_DISABLED)) == 0,
                         (state & MF_SEPARATOR) != 0});
    }
    return items;
}

// Keys work on every system; a menu does not take posted clicks.
void Robot::choosePopup(std::string_view text) const {
    int steps = 0;
    for (const PopupItem& item : waitPopup()) {
        if (item.separator) continue;
        ++steps;
        if (item.text != text) continue;
        if (!item.enabled) break;
        GUITHREADINFO info{};
        info.cbSize = sizeof info;
        GetGUIThreadInfo(guiThread_, &info);
        for (int i = 0; i < steps; ++i) PostMessageW(info.hwndMenuOwner, WM_KEYDOWN, VK_DOWN, 0);
        PostMessageW(info.hwndMenuOwner, WM_KEYDOWN, VK_RETURN, 0);
        return;
    }
    fail("the popup menu has no item \"" + std::string(text) + "\" to choose");
}

// Not by the Escape key: a dialog would take it, were the menu gone already.
void Robot::dismissPopup() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof info;
    GetGUIThreadInfo(guiThread_, &info);
    PostMessageW(info.hwndMenuOwner, WM_CANCELMODE, 0, 0);
    waitFor("waited for the popup menu to go", [&] { return popupWindow() == nullptr; });
}

}  // namespace korvane::host
