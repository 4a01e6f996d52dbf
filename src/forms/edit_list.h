#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/prompts.h"

namespace korvane {

struct ListColumn {
    std::string_view title;
    int width;  // pixels
};

using ListRow = std::vector<std::string>;  // a text for each column, UTF-8

// A list of records that the operator edits, without its window. Rows count from 0.
class EditList {
  public:
    static constexpr int noRow = -1;

    // What can be done while `row` is the first selected one, or while none is.
    struct Offer {
        bool add, edit, remove;
        bool operator==(const Offer&) const = default;
    };

    virtual ~EditList() = default;

    virtual std::vector<ListColumn> columns() const = 0;
    virtual std::vector<ListRow> rows() const = 0;
    virtual Offer offer(int row) const { return {true, row != noRow, row != noRow}; }

    // What the menu calls an addition; empty for the usual word.
    virtual std::string_view addLabel() const { return {}; }

    // Each shows what dialogs and messages it takes. True when the list has changed.
    virtual bool add(int before) = 0;  // noRow: at the end
    virtual bool edit(int row) = 0;
    // By double-click, noRow: below the rows. Some lists take it where their menu offers nothing.
    virtual bool open(int row) { return row != noRow && offer(row).edit && edit(row); }
    virtual bool remove(int row) = 0;  // has been confirmed, if that is asked for
    // A list that asks nothing loses its first selected row alone.
    virtual bool asksBeforeRemoval() const { return true; }
};

// What menus, keys and mouse of such a list do. Each is true when the list has changed and is to be
// filled again.
class ListEditor {
  public:
    ListEditor(EditList& list, Prompts& prompts) : list_(list), prompts_(prompts) {}

    // The selected rows, in ascending order.
    using Selection = std::vector<int>;

    EditList::Offer offer(const Selection& selection) const;
    bool add(const Selection& selection);
    // By key: at the end where only the selected row stands against an addition before it.
    bool addAnywhere(const Selection& selection);
    bool edit(const Selection& selection);
    // Asks first.
    bool remove(const Selection& selection);

  private:
    EditList& list_;
    Prompts& prompts_;
};

// What a list shows after it was filled again: the row to select, and one to bring into view; noRow
// for none. `remembered` was the first selected row, `top` the first visible one of `perPage`.
struct RefilledView {
    int selected, visible;
    bool operator==(const RefilledView&) const = default;
};
RefilledView refilledView(int remembered, int top, int perPage, int rows);

}  // namespace korvane
