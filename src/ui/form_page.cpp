#include "ui/form_page.h"

namespace korvane {

bool FormPage::onInit() {
    controls_.attach(hwnd());
    lists_.create(hwnd());
    refresh();
    return true;
}

// As far from the right and the bottom as from the left.
void FormPage::onSize(int width, int height) {
    if (lists_.empty() || !hwnd()) return;
    const ListView list = lists_.last().view();
    RECT area = list.area();
    area.right = width - area.left;
    area.bottom = height - area.left;
    list.place(area);
}

void FormPage::refresh() {
    exchange_.show();
    lists_.refill();
}

// From now on what was stored is what nobody has touched.
bool FormPage::commit() {
    if (!exchange_.accept()) return false;
    exchange_.show();
    return true;
}

bool FormPage::onCommand(int id, int notification, HWND control) {
    if (notification == BN_CLICKED && control) exchange_.clicked(id);
    return lists_.onCommand(id);
}

std::optional<LRESULT> FormPage::onNotify(const NMHDR& header) {
    return lists_.onNotify(header);
}

std::optional<INT_PTR> FormPage::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return lists_.onMessage(message, wParam, lParam);
}

}  // namespace korvane
