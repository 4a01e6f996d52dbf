#include "ui/copy_keys.h"

#include "text/text.h"

namespace korvane {
namespace {

// The memory becomes the clipboard's own once it has taken it.
void putOnClipboard(const std::wstring& text) {
    const std::size_t bytes = (text.size() + 1) * sizeof(wchar_t);
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, bytes);
    if (!memory) return;
    memcpy(GlobalLock(memory), text.c_str(), bytes);
    GlobalUnlock(memory);
    if (!SetClipboardData(CF_UNICODETEXT, memory)) GlobalFree(memory);
}

// Where nothing is selected, what was copied before stays.
void copy(HWND owner, const std::string& text) {
    const std::wstring wide = toWide(text);
    if (wide.empty() || !OpenClipboard(owner)) return;
    EmptyClipboard();
    putOnClipboard(wide);
    CloseClipboard();
}

bool isWithControl(WORD key, WORD wanted) {
    return key == wanted && GetKeyState(VK_CONTROL) < 0;
}

std::string selectedRows(const ListView& list) {
    std::string text;
    for (const int row : list.allSelected()) {
        for (int column = 0; column < list.columnCount(); ++column)
            text += (column > 0 ? "\t" : "") + list.cell(row, column);
        text += "\r\n";
    }
    return text;
}

void addBranch(const Tree& tree, HTREEITEM item, std::size_t depth, std::string& text) {
    text += std::string(depth, '\t') + tree.itemText(item) + "\r\n";
    for (HTREEITEM child = tree.next(TVGN_CHILD, item); child; child = tree.next(TVGN_NEXT, child))
        addBranch(tree, child, depth + 1, text);
}

}  // namespace

bool selectOrCopyRows(const ListView& list, WORD key) {
    if (isWithControl(key, 'A'))
        list.selectAll();
    else if (isWithControl(key, 'C'))
        copy(list.window(), selectedRows(list));
    else
        return false;
    return true;
}

bool copyBranch(const Tree& tree, WORD key) {
    if (!isWithControl(key, 'C')) return false;
    std::string text;
    if (HTREEITEM selected = tree.next(TVGN_CARET)) addBranch(tree, selected, 0, text);
    copy(tree.window(), text);
    return true;
}

}  // namespace korvane
