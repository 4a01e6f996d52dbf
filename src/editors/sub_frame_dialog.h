#pragma once

#include "editors/media_components_page.h"
#include "ui/form_dialog.h"

namespace korvane {

// What another window asks a sub-frame's: wParam, if any, points to the 32 bits that the entered
// service id is put into. It is the answer, too.
inline constexpr UINT serviceIdMessage = 2000;

class SubFrameDialog : public FormDialog {
  public:
    SubFrameDialog(SubFrameForm& form, Prompts& prompts);

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    std::optional<LRESULT> onSent(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    RECT pageArea() const;

    SubFrameForm& form_;
    MediaComponentsPage page_;
};

}  // namespace korvane
