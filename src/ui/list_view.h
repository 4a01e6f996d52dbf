#pragma once

#include "forms/edit_list.h"
#include "ui/controls.h"

namespace korvane {

// A list view in report form that selects whole rows.
class ListView : public Control {
  public:
    using Control::Control;
    using Row = ListRow;
    using Column = ListColumn;

    enum class Marks { None, CheckBoxes };

    // Before any rows. Widths are those on a 96 dpi screen.
    void setUp(std::span<const Column> columns, Marks marks = Marks::None) const;

    // Removes all rows and columns.
    void clear() const;

    // Replaces all rows. Rows that were selected stay selected by their index, and the list stays
    // scrolled where it was as far as there still are rows.
    void setRows(std::span<const Row> rows) const;

    int count() const { return static_cast<int>(send(LVM_GETITEMCOUNT)); }
    int columnCount() const;
    std::string cell(int row, int column) const;
    // The first selected row, or -1.
    int selected() const { return next(-1, LVNI_SELECTED); }
    std::vector<int> allSelected() const;
    // Makes one row the selected and focused one and brings it into view; -1 selects none.
    void select(int row) const;
    // As select, but leaves the list scrolled where it is.
    void mark(int row) const;
    void selectAll() const { setState(-1, LVIS_SELECTED, LVIS_SELECTED); }
    void makeVisible(int row) const { send(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE); }
    int topRow() const { return static_cast<int>(send(LVM_GETTOPINDEX)); }
    int rowsPerPage() const { return static_cast<int>(send(LVM_GETCOUNTPERPAGE)); }
    // In pixels of the list; empty for no row.
    RECT rowArea(int row) const;
    bool checked(int row) const;
    void setChecked(int row, bool checked) const;

  private:
    int next(int after, UINT which) const {
        return static_cast<int>(send(LVM_GETNEXTITEM, static_cast<WPARAM>(after), which));
    }
    void setState(int row, UINT state, UINT mask) const;
    void setCell(int row, int column, std::string_view text) const;
    void resize(int rowCount) const;
};

}  // namespace korvane
