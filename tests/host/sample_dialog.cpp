#include "sample_dialog.h"

#include <algorithm>
#include <commctrl.h>

namespace korvane::host {

namespace {

void addItem(HWND tab, const wchar_t* title) {
    TCITEMW item{};
    item.mask = TCIF_TEXT;
    item.pszText = const_cast<wchar_t*>(title);
    SendMessageW(tab, TCM_INSERTITEMW, 99, reinterpret_cast<LPARAM>(&item));
}

HTREEITEM addNode(HWND tree, HTREEITEM parent, const wchar_t* text) {
    TVINSERTSTRUCTW node{};
    node.hParent = parent;
    node.hInsertAfter = TVI_LAST;
    node.item.mask = TVIF_TEXT;
    node.item.pszText = const_cast<wchar_t*>(text);
    return reinterpret_cast<HTREEITEM>(
        SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&node)));
}

void addColumn(HWND list, int index, const wchar_t* title) {
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_WIDTH;
    column.cx = 80;
    column.pszText = const_cast<wchar_t*>(title);
    SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(index),
                 reinterpret_cast<LPARAM>(&column));
}

void addRow(HWND list, int row, const wchar_t* first, const wchar_t* second) {
    LVITEMW item{};
    item.mask = LVIF_TEXT;
    item.iItem = row;
    item.pszText = const_cast<wchar_t*>(first);
    SendMessageW(list, LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    item.iSubItem = 1;
    item.pszText = const_cast<wchar_t*>(second);
    SendMessageW(list, LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

}  // namespace

SampleDialog::SampleDialog() {
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    struct {
        DLGTEMPLATE head;
        WORD menu, className, title;
    } dialog{};
    dialog.head.style = WS_POPUP | WS_CAPTION | WS_VISIBLE;
    dialog.head.cx = 320;
    dialog.head.cy = 240;
    CreateDialogIndirectParamW(GetModuleHandleW(nullptr), &dialog.head, nullptr, procedure,
                               reinterpret_cast<LPARAM>(this));
}

SampleDialog::~SampleDialog() {
    DestroyWindow(window_);
}

bool SampleDialog::saw(const std::string& event) const {
    return std::find(events_.begin(), events_.end(), event) != events_.end();
}

HWND SampleDialog::add(const wchar_t* className, DWORD style, Id id, int left, int top) {
    return CreateWindowExW(0, className, L"", WS_CHILD | WS_VISIBLE | style, left, top, 200, 120,
                           window_, reinterpret_cast<HMENU>(id), nullptr, nullptr);
}

void SampleDialog::addControls() {
    SetWindowTextW(window_, L"样例");
    add(L"Edit", WS_BORDER, edit, 0, 0);
    SetWindowTextW(add(L"Button", BS_PUSHBUTTON, button, 0, 120), L"按钮");
    add(L"ComboBox", CBS_DROPDOWNLIST, combo, 0, 240);
    add(L"ListBox", LBS_NOTIFY, listBox, 0, 360);
    SendMessageW(add(WC_LISTVIEWW, LVS_REPORT, list, 210, 0), LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                 LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT);
    add(WC_TABCONTROLW, 0, tab, 210, 120);
    add(WC_TREEVIEWW, 0, tree, 210, 240);
    fill();
}

void SampleDialog::fill() {
    for (const wchar_t* text : {L"甲", L"乙", L"丙"}) {
        SendDlgItemMessageW(window_, combo, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        SendDlgItemMessageW(window_, listBox, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text));
        addItem(GetDlgItem(window_, tab), text);
    }
    HWND view = GetDlgItem(window_, list);
    addColumn(view, 0, L"名称");
    addColumn(view, 1, L"数值");
    for (int row = 0; row < 3; ++row) addRow(view, row, row == 1 ? L"第二行" : L"一行", L"42");
    HWND nodes = GetDlgItem(window_, tree);
    HTREEITEM root = addNode(nodes, TVI_ROOT, L"复用帧0");
    addNode(nodes, addNode(nodes, root, L"子帧0"), L"业务");
    addNode(nodes, TVI_ROOT, L"复用帧1");
}

void SampleDialog::showMenu() {
    HMENU menu = CreatePopupMenu();
    AppendMenuW(menu, MF_STRING, 1, L"添加");
    AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
    AppendMenuW(menu, MF_STRING | MF_GRAYED, 2, L"修改");
    AppendMenuW(menu, MF_STRING, 3, L"删除");
    const BOOL chosen =
        TrackPopupMenu(menu, TPM_RETURNCMD | TPM_NONOTIFY, 10, 10, 0, window_, nullptr);
    DestroyMenu(menu);
    events_.push_back("menu " + std::to_string(chosen));
}

INT_PTR CALLBACK SampleDialog::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* self = reinterpret_cast<SampleDialog*>(GetWindowLongPtrW(window, DWLP_USER));
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(window, DWLP_USER, lParam);
        self = reinterpret_cast<SampleDialog*>(lParam);
        self->window_ = window;
        self->addControls();
        return FALSE;
    }
    if (self == nullptr) return FALSE;
    if (message == WM_COMMAND)
        self->events_.push_back("command " + std::to_string(LOWORD(wParam)) + "/" +
                                std::to_string(HIWORD(wParam)));
    if (message == WM_NOTIFY) {
        const auto* header = reinterpret_cast<const NMHDR*>(lParam);
        self->events_.push_back("notify " + std::to_string(header->idFrom) + "/" +
                                std::to_string(static_cast<int>(header->code)));
    }
    if (message == WM_CONTEXTMENU) self->showMenu();
    return FALSE;
}

}  // namespace korvane::host
