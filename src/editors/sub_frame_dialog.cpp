#include "editors/sub_frame_dialog.h"

#include "resources/ids.h"

namespace korvane {

SubFrameDialog::SubFrameDialog(SubFrameForm& form, Prompts& prompts)
    : FormDialog(form, prompts), form_(form), page_(form, prompts) {
    addList(form.ecm(), IDC_ECM_COMPONENTS, firstListMenu);
}

// The page has a number like any control: for the form it is one. It comes behind the group box
// that it lies in, so that Tab finds it there.
bool SubFrameDialog::onInit() {
    if (!page_.create(hwnd())) throw std::runtime_error("no page for a media service");
    SetWindowLongPtrW(page_.hwnd(), GWLP_ID, IDD_MEDIA_COMPONENTS);
    page_.place(pageArea());
    SetWindowPos(page_.hwnd(), GetDlgItem(hwnd(), IDC_SERVICE_GROUP), 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return FormDialog::onInit();
}

RECT SubFrameDialog::pageArea() const {
    const RECT group = control<Control>(IDC_SERVICE_GROUP).area();
    return {group.left + 12, group.top + 20, group.right - 15, group.bottom - 15};
}

// One list shows in two places.
bool SubFrameDialog::onCommand(int id, int notification, HWND control) {
    const bool handled = FormDialog::onCommand(id, notification, control);
    if (id == IDC_SERVICE_TYPE && notification == CBN_SELCHANGE) {
        lists().refill();
        page_.refill();
    }
    return handled;
}

// What is entered is read at once.
std::optional<LRESULT> SubFrameDialog::onSent(UINT message, WPARAM wParam, LPARAM) {
    if (message != serviceIdMessage) return std::nullopt;
    const std::uint32_t id = form_.serviceId();
    if (wParam != 0) *reinterpret_cast<std::uint32_t*>(wParam) = id;
    return static_cast<LRESULT>(id);
}

}  // namespace korvane
