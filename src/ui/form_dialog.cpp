#include "ui/form_dialog.h"

#include <algorithm>

#include "text/text.h"
#include "ui/controls.h"

namespace korvane {

std::string DialogControls::text(int control) const {
    return at<Control>(control).text();
}
void DialogControls::setText(int control, std::string_view text) {
    at<Control>(control).setText(text);
}
int DialogControls::selected(int control) const {
    return at<Combo>(control).selected();
}
void DialogControls::select(int control, int index) {
    at<Combo>(control).select(index);
}
void DialogControls::setItems(int control, std::span<const std::string_view> items) {
    at<Combo>(control).setItems(items);
}
bool DialogControls::checked(int control) const {
    return at<CheckBox>(control).checked();
}
void DialogControls::setChecked(int control, bool checked) {
    at<CheckBox>(control).setChecked(checked);
}
std::vector<int> DialogControls::checkedRows(int control) const {
    const auto list = at<ListView>(control);
    std::vector<int> rows;
    for (int row = 0; row < list.count(); ++row)
        if (list.checked(row)) rows.push_back(row);
    return rows;
}
void DialogControls::setCheckedRows(int control, const std::vector<int>& rows) {
    const auto list = at<ListView>(control);
    for (int row = 0; row < list.count(); ++row)
        list.setChecked(row, std::ranges::find(rows, row) != rows.end());
}
std::optional<Ipv4> DialogControls::address(int control) const {
    return at<IpBox>(control).address();
}
void DialogControls::setAddress(int control, const std::optional<Ipv4>& address) {
    at<IpBox>(control).setAddress(address);
}
void DialogControls::setLevel(int control, int percent) {
    at<LevelBar>(control).setLevel(percent);
}
void DialogControls::setEnabled(int control, bool enabled) {
    at<Control>(control).enable(enabled);
}
void DialogControls::setVisible(int control, bool visible) {
    at<Control>(control).show(visible);
}

// As the system moves it: the text of an edit is selected, and the default button keeps its border.
void DialogControls::focus(int control) {
    SendMessageW(dialog_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog_, control)),
                 TRUE);
}

FormDialog::FormDialog(Form& form, Prompts& prompts)
    : Dialog(form.dialog()), form_(form), prompts_(prompts), exchange_(form, controls_, prompts) {}

void FormDialog::addList(EditList& list, int control, const ListMenu& menu) {
    lists_.add(list, prompts_, control, menu, [this, control] { exchange_.entered(control); });
}

bool FormDialog::onInit() {
    controls_.attach(hwnd());
    if (!form_.title().empty()) SetWindowTextW(hwnd(), toWide(form_.title()).c_str());
    for (const int hidden : form_.hidden()) control<Control>(hidden).show(false);
    lists_.create(hwnd());
    lists_.refill();
    exchange_.show();
    return true;
}

// Enter presses the default button, wherever the focus is.
bool FormDialog::onCommand(int id, int notification, HWND control) {
    if (id == IDOK && !exchange_.accept()) return true;
    if (notification == BN_CLICKED && control) exchange_.clicked(id);
    const bool isEntry = notification == EN_CHANGE || notification == CBN_SELCHANGE;
    if (control && (isEntry || notification == BN_CLICKED)) exchange_.entered(id);
    return (id != IDOK && lists_.onCommand(id)) || Dialog::onCommand(id, notification, control);
}

std::optional<LRESULT> FormDialog::onNotify(const NMHDR& header) {
    return lists_.onNotify(header);
}

std::optional<INT_PTR> FormDialog::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return lists_.onMessage(message, wParam, lParam);
}

bool WindowFormRunner::run(Form& form) {
    const auto window = windows_.find(form.dialog());
    return (window != windows_.end() ? window->second(form, prompts_)
                                     : FormDialog(form, prompts_).showModal()) == IDOK;
}

}  // namespace korvane
