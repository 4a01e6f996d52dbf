#include "editors/input_channel_page.h"

#include "model/channel_text.h"
#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {

InputChannelPage::InputChannelPage(const Editing& editing)
    : Page(IDD_INPUT_CHANNEL_PAGE),
      channels_(editing),
      view_(channels_, editing.prompts, IDC_CHANNELS, firstListMenu) {}

bool InputChannelPage::onInit() {
    const auto types = control<ListBox>(IDC_CHANNEL_TYPES);
    types.setItems(channelTypeNames);
    types.select(0);
    view_.create(hwnd());
    refresh();
    return true;
}

void InputChannelPage::onSize(int width, int height) {
    if (!hwnd()) return;
    const auto types = control<ListBox>(IDC_CHANNEL_TYPES);
    const ListView channels = view_.view();
    RECT typeArea = types.area(), channelArea = channels.area();
    typeArea.bottom = channelArea.bottom = height;
    channelArea.right = width;
    types.place(typeArea);
    channels.place(channelArea);
}

bool InputChannelPage::onCommand(int id, int notification, HWND) {
    if (id != IDC_CHANNEL_TYPES) return view_.onCommand(id);
    if (notification == LBN_SELCHANGE) selectType();
    return notification == LBN_SELCHANGE;
}

// A click on the selected type is no change: the list stays as it is.
void InputChannelPage::selectType() {
    const int type = control<ListBox>(IDC_CHANNEL_TYPES).selected();
    if (type >= 0 && channels_.select(static_cast<ChannelType>(type))) view_.rebuild();
}

std::optional<LRESULT> InputChannelPage::onNotify(const NMHDR& header) {
    return view_.onNotify(header) ? std::optional<LRESULT>(TRUE) : std::nullopt;
}

std::optional<INT_PTR> InputChannelPage::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto window = reinterpret_cast<HWND>(wParam);
    if (message != WM_CONTEXTMENU || !view_.onContextMenu(window, lParam)) return std::nullopt;
    return TRUE;
}

}  // namespace korvane
