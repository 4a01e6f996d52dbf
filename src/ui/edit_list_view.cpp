#include "ui/edit_list_view.h"

#include <algorithm>
#include <memory>
#include <windowsx.h>

#include "text/text.h"
#include "ui/copy_keys.h"
#include "ui/modal.h"
#include "ui/module.h"

namespace korvane {
namespace {

struct DestroyMenuHandle {
    using pointer = HMENU;
    void operator()(HMENU menu) const { DestroyMenu(menu); }
};

}  // namespace

void EditListView::create(HWND dialog) {
    dialog_ = dialog;
    view().setUp(list_.columns());
}

void EditListView::rebuild() {
    view().clear();
    view().setUp(list_.columns());
    refill();
}

void EditListView::refill() {
    const ListView list = view();
    const int top = list.topRow(), perPage = list.rowsPerPage(), selected = list.selected();
    const std::vector<ListRow> rows = list_.rows();
    const RefilledView shown = refilledView(selected, top, perPage, static_cast<int>(rows.size()));
    list.setRows(rows);
    list.mark(shown.selected);
    if (shown.visible != EditList::noRow) list.makeVisible(shown.visible);
}

void EditListView::refillIf(bool changed) {
    if (!changed) return;
    refill();
    if (changed_) changed_();
}

bool EditListView::onNotify(const NMHDR& header) {
    if (!dialog_ || header.hwndFrom != view().window()) return false;
    switch (header.code) {
        case NM_RCLICK: {
            const DWORD where = GetMessagePos();
            showMenu({GET_X_LPARAM(where), GET_Y_LPARAM(where)});
            return true;
        }
        case NM_DBLCLK:
            onDoubleClick(reinterpret_cast<const NMITEMACTIVATE&>(header).iItem);
            return true;
        case LVN_KEYDOWN:
            return onKey(reinterpret_cast<const NMLVKEYDOWN&>(header));
        default:
            return false;
    }
}

// With Ctrl held, the click leaves other rows selected.
void EditListView::onDoubleClick(int row) {
    refillIf(list_.open(row));
}

bool EditListView::onKey(const NMLVKEYDOWN& key) {
    const ListView list = view();
    const auto selection = list.allSelected();
    switch (key.wVKey) {
        case VK_INSERT:
            refillIf(editor_.addAnywhere(selection));
            return true;
        case VK_DELETE:
            refillIf(editor_.remove(selection));
            return true;
        default:
            return selectOrCopyRows(list, key.wVKey);
    }
}

// Enter in the list comes as the dialog's default command.
bool EditListView::onCommand(int id) {
    if (!dialog_) return false;
    const ListView list = view();
    const auto selection = list.allSelected();
    const bool enter = id == IDOK && GetFocus() == list.window();
    if (id == menu_.add)
        refillIf(editor_.add(selection));
    else if (id == menu_.edit || enter)
        refillIf(editor_.edit(selection));
    else if (id == menu_.remove)
        refillIf(editor_.remove(selection));
    else
        return false;
    return true;
}

bool EditListView::onContextMenu(HWND window, LPARAM where) {
    constexpr LPARAM byKey = -1;
    if (!dialog_ || window != view().window() || where != byKey) return false;
    const ListView list = view();
    if (list.selected() != EditList::noRow) list.makeVisible(list.selected());
    showMenu(placeOfSelection());
    return true;
}

POINT EditListView::placeOfSelection() const {
    const ListView list = view();
    const RECT row = list.rowArea(list.selected());
    // A list that is scrolled sideways has the row's beginning beyond its edge.
    POINT place{std::max<LONG>(row.left, 0), row.bottom};
    ClientToScreen(list.window(), &place);
    return place;
}

void EditListView::leaveOffered(HMENU items) const {
    const EditList::Offer offer = editor_.offer(view().allSelected());
    if (!offer.add) DeleteMenu(items, static_cast<UINT>(menu_.add), MF_BYCOMMAND);
    if (!offer.edit) DeleteMenu(items, static_cast<UINT>(menu_.edit), MF_BYCOMMAND);
    if (!offer.remove) DeleteMenu(items, static_cast<UINT>(menu_.remove), MF_BYCOMMAND);
}

void EditListView::rename(HMENU items) const {
    if (list_.addLabel().empty()) return;
    const auto add = static_cast<UINT>(menu_.add);
    ModifyMenuW(items, add, MF_BYCOMMAND | MF_STRING, add, toWide(list_.addLabel()).c_str());
}

// The command comes to the dialog as that of any menu.
void EditListView::showMenu(POINT where) {
    const std::unique_ptr<HMENU, DestroyMenuHandle> menu(
        LoadMenuW(moduleInstance(), MAKEINTRESOURCEW(menu_.menu)));
    const HMENU items = GetSubMenu(menu.get(), 0);
    leaveOffered(items);
    rename(items);
    if (GetMenuItemCount(items) == 0) return;
    const ModalScope scope(ModalScope::Shows::Menu);
    TrackPopupMenu(items, TPM_RIGHTBUTTON, where.x, where.y, 0, dialog_, nullptr);
    scope.check();
}

}  // namespace korvane
