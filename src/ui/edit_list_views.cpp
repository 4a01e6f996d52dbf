#include "ui/edit_list_views.h"

#include <algorithm>

namespace korvane {

void EditListViews::create(HWND dialog) {
    for (EditListView& list : lists_) list.create(dialog);
}

void EditListViews::refill() {
    for (EditListView& list : lists_) list.refill();
}

bool EditListViews::onCommand(int id) {
    return std::ranges::any_of(lists_, [id](EditListView& list) { return list.onCommand(id); });
}

std::optional<LRESULT> EditListViews::onNotify(const NMHDR& header) {
    const bool taken = std::ranges::any_of(
        lists_, [&header](EditListView& list) { return list.onNotify(header); });
    return taken ? std::optional<LRESULT>(TRUE) : std::nullopt;
}

std::optional<INT_PTR> EditListViews::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_CONTEXTMENU) return std::nullopt;
    const auto window = reinterpret_cast<HWND>(wParam);
    const bool taken = std::ranges::any_of(
        lists_, [&](EditListView& list) { return list.onContextMenu(window, lParam); });
    return taken ? std::optional<INT_PTR>(TRUE) : std::nullopt;
}

}  // namespace korvane
