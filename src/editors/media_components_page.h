#pragma once

#include "editors/sub_frame_form.h"
#include "ui/dialog.h"
#include "ui/edit_list_views.h"

namespace korvane {

// The lists of a media service, within the dialog of its sub-frame.
class MediaComponentsPage : public Dialog {
  public:
    MediaComponentsPage(SubFrameForm& form, Prompts& prompts);

    void refill() { lists_.refill(); }

  protected:
    bool onInit() override;
    bool onCommand(int id, int, HWND) override { return lists_.onCommand(id); }
    std::optional<LRESULT> onNotify(const NMHDR& header) override {
        return lists_.onNotify(header);
    }
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override {
        return lists_.onMessage(message, wParam, lParam);
    }

  private:
    EditListViews lists_;
};

}  // namespace korvane
