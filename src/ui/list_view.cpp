#include "ui/list_view.h"

#include "text/text.h"

namespace korvane {

void ListView::setUp(std::span<const Column> columns, Marks marks) const {
    DWORD style = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER;
    if (marks == Marks::CheckBoxes) style |= LVS_EX_CHECKBOXES;
    send(LVM_SETEXTENDEDLISTVIEWSTYLE, style, static_cast<LPARAM>(style));
    WPARAM index = 0;
    for (const Column& column : columns) {
        std::wstring title = toWide(column.title);
        LVCOLUMNW request{};
        request.mask = LVCF_TEXT | LVCF_WIDTH | LVCF_FMT | LVCF_SUBITEM;
        request.fmt = LVCFMT_LEFT;
        request.cx = scaled(column.width);
        request.pszText = title.data();
        request.iSubItem = static_cast<int>(index);
        send(LVM_INSERTCOLUMNW, index++, reinterpret_cast<LPARAM>(&request));
    }
}

int ListView::columnCount() const {
    const auto header = reinterpret_cast<HWND>(send(LVM_GETHEADER));
    return static_cast<int>(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0));
}

void ListView::clear() const {
    send(LVM_DELETEALLITEMS);
    while (send(LVM_DELETECOLUMN, 0)) {
    }
}

// Rows that stay are rewritten in place: that is what keeps selection, marks and scrolling.
void ListView::setRows(std::span<const Row> rows) const {
    holdDrawing();
    resize(static_cast<int>(rows.size()));
    for (int row = 0; row < static_cast<int>(rows.size()); ++row) {
        const Row& cells = rows[static_cast<std::size_t>(row)];
        for (int column = 0; column < static_cast<int>(cells.size()); ++column)
            setCell(row, column, cells[static_cast<std::size_t>(column)]);
    }
    resumeDrawing();
}

void ListView::resize(int rowCount) const {
    for (int row = count(); row > rowCount; --row)
        send(LVM_DELETEITEM, static_cast<WPARAM>(row - 1));
    for (int row = count(); row < rowCount; ++row) {
        LVITEMW item{};
        item.iItem = row;
        send(LVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&item));
    }
}

void ListView::setCell(int row, int column, std::string_view text) const {
    std::wstring wide = toWide(text);
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = wide.data();
    send(LVM_SETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

std::string ListView::cell(int row, int column) const {
    std::array<wchar_t, 512> buffer{};
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = buffer.data();
    item.cchTextMax = static_cast<int>(buffer.size());
    const auto length =
        send(LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    return toUtf8({item.pszText, static_cast<std::size_t>(length)});
}

std::vector<int> ListView::allSelected() const {
    std::vector<int> rows;
    for (int row = selected(); row >= 0; row = next(row, LVNI_SELECTED)) rows.push_back(row);
    return rows;
}

void ListView::select(int row) const {
    mark(row);
    if (row >= 0) makeVisible(row);
}

void ListView::mark(int row) const {
    setState(-1, 0, LVIS_SELECTED);
    if (row >= 0) setState(row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
}

RECT ListView::rowArea(int row) const {
    RECT area{LVIR_BOUNDS, 0, 0, 0};
    const bool there =
        send(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area)) != FALSE;
    return there ? area : RECT{};
}

// The state image of a checked row is the second one, of an unchecked row the first.
bool ListView::checked(int row) const {
    return send(LVM_GETITEMSTATE, static_cast<WPARAM>(row), LVIS_STATEIMAGEMASK) ==
           INDEXTOSTATEIMAGEMASK(2);
}

void ListView::setChecked(int row, bool checked) const {
    setState(row, INDEXTOSTATEIMAGEMASK(checked ? 2 : 1), LVIS_STATEIMAGEMASK);
}

void ListView::setState(int row, UINT state, UINT mask) const {
    LVITEMW item{};
    item.state = state;
    item.stateMask = mask;
    send(LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

}  // namespace korvane
