#include "ui/form_page.h"

#include <algorithm>

namespace korvane {

void FormPage::addList(EditList& list, Prompts& prompts, int control, const ListMenu& menu) {
    lists_.emplace_back(list, prompts, control, menu);
}

bool FormPage::onInit() {
    controls_.attach(hwnd());
    for (EditListView& list : lists_) list.create(hwnd());
    refresh();
    return true;
}

// As far from the right and the bottom as from the left.
void FormPage::onSize(int width, int height) {
    if (lists_.empty() || !hwnd()) return;
    const ListView list = lists_.back().view();
    RECT area = list.area();
    area.right = width - area.left;
    area.bottom = height - area.left;
    list.place(area);
}

void FormPage::refresh() {
    exchange_.show();
    for (EditListView& list : lists_) list.refill();
}

// From now on what was stored is what nobody has touched.
bool FormPage::commit() {
    if (!exchange_.accept()) return false;
    exchange_.show();
    return true;
}

bool FormPage::onCommand(int id, int notification, HWND control) {
    if (notification == BN_CLICKED && control) exchange_.clicked(id);
    return std::ranges::any_of(lists_, [id](EditListView& list) { return list.onCommand(id); });
}

std::optional<LRESULT> FormPage::onNotify(const NMHDR& header) {
    const bool taken = std::ranges::any_of(
        lists_, [&header](EditListView& list) { return list.onNotify(header); });
    return taken ? std::optional<LRESULT>(TRUE) : std::nullopt;
}

std::optional<INT_PTR> FormPage::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_CONTEXTMENU) return std::nullopt;
    const auto window = reinterpret_cast<HWND>(wParam);
    const bool taken = std::ranges::any_of(
        lists_, [&](EditListView& list) { return list.onContextMenu(window, lParam); });
    return taken ? std::optional<INT_PTR>(TRUE) : std::nullopt;
}

}  // namespace korvane
