#pragma once

#include <functional>

#include "forms/edit_list.h"
#include "resources/ids.h"
#include "ui/list_view.h"

namespace korvane {

// The three commands of a list's popup menu; each menu has its own numbers for them.
struct ListMenu {
    int menu, add, edit, remove;
};
inline constexpr ListMenu firstListMenu{IDM_FIRST_LIST, IDM_FIRST_LIST_ADD, IDM_FIRST_LIST_EDIT,
                                        IDM_FIRST_LIST_REMOVE},
    secondListMenu{IDM_SECOND_LIST, IDM_SECOND_LIST_ADD, IDM_SECOND_LIST_EDIT,
                   IDM_SECOND_LIST_REMOVE},
    thirdListMenu{IDM_THIRD_LIST, IDM_THIRD_LIST_ADD, IDM_THIRD_LIST_EDIT, IDM_THIRD_LIST_REMOVE};

// A list view in which the operator edits: by a popup menu, by double-click and by keys.
class EditListView {
  public:
    // `changed` hears of each change, once the view shows it.
    EditListView(EditList& list, Prompts& prompts, int control, const ListMenu& menu,
                 std::function<void()> changed = {})
        : list_(list),
          editor_(list, prompts),
          control_(control),
          menu_(menu),
          changed_(std::move(changed)) {}

    // The dialog's window is there.
    void create(HWND dialog);
    // Fills it anew; the first selected row and the place it is scrolled to stay, see refilledView.
    void refill();
    // Other columns, and other records: begins at the first row.
    void rebuild();

    // What the dialog passes on. True when it was this list's, and dealt with.
    bool onNotify(const NMHDR& header);
    bool onCommand(int id);
    // Of WM_CONTEXTMENU by key: the menu at the selected row.
    bool onContextMenu(HWND window, LPARAM where);

    ListView view() const { return ListView(GetDlgItem(dialog_, control_)); }

  private:
    void onDoubleClick(int row);
    bool onKey(const NMLVKEYDOWN& key);
    void leaveOffered(HMENU items) const;
    void rename(HMENU items) const;
    void showMenu(POINT where);
    void refillIf(bool changed);
    POINT placeOfSelection() const;

    EditList& list_;
    ListEditor editor_;
    int control_;
    ListMenu menu_;
    std::function<void()> changed_;
    HWND dialog_ = nullptr;
};

}  // namespace korvane
