#pragma once

#include "editors/channel_list.h"
#include "ui/edit_list_view.h"
#include "ui/page.h"

namespace korvane {

// The page of the input channels: their types, and beside them the channels of the selected one.
// It has no fields of its own; each change is the model's at once.
class InputChannelPage : public Page {
  public:
    explicit InputChannelPage(const Editing& editing);

    void refresh() override { view_.refill(); }

  protected:
    bool onInit() override;
    void onSize(int width, int height) override;
    bool onCommand(int id, int notification, HWND control) override;
    std::optional<LRESULT> onNotify(const NMHDR& header) override;
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    void selectType();

    ChannelList channels_;
    EditListView view_;
};

}  // namespace korvane
