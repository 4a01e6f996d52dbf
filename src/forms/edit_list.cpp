#include "forms/edit_list.h"

namespace korvane {
namespace {

int firstOf(const ListEditor::Selection& selection) {
    return selection.empty() ? EditList::noRow : selection.front();
}

}  // namespace

EditList::Offer ListEditor::offer(const Selection& selection) const {
    return list_.offer(firstOf(selection));
}

bool ListEditor::add(const Selection& selection) {
    return offer(selection).add && list_.add(firstOf(selection));
}

bool ListEditor::addAnywhere(const Selection& selection) {
    return offer(selection).add ? list_.add(firstOf(selection)) : add({});
}

bool ListEditor::edit(const Selection& selection) {
    return offer(selection).edit && list_.edit(firstOf(selection));
}

// Each row that goes moves those behind it up.
bool ListEditor::remove(const Selection& selection) {
    if (!offer(selection).remove) return false;
    if (!list_.asksBeforeRemoval()) return list_.remove(firstOf(selection));
    if (!prompts_.confirm("请确认删除")) return false;
    int removed = 0;
    for (const int row : selection)
        if (list_.remove(row - removed)) ++removed;
    return removed > 0;
}

RefilledView refilledView(int remembered, int top, int perPage, int rows) {
    if (rows == 0) return {EditList::noRow, EditList::noRow};
    if (remembered == EditList::noRow || remembered >= rows) return {0, EditList::noRow};
    return {remembered, top + perPage <= rows ? top + perPage - 1 : EditList::noRow};
}

}  // namespace korvane
