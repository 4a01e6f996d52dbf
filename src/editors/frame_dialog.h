#pragma once

#include "editors/frame_form.h"
#include "ui/form_dialog.h"

namespace korvane {

// What a sub-frame's dialog asks its frame's by, as window messages. The first parameter is what is
// asked about.
enum FrameMessage : UINT {
    askServiceId = 1001,   // see FrameQuestions::checkServiceId
    askCandidates = 1002,  // dropTaken; the second one is the std::vector of the candidates
    askBandwidth = 1003,   // checkBandwidth
    askSubFrameId = 1010,  // checkSubFrameId
};

// The dialog of a multiplex frame.
class FrameDialog : public FormDialog {
  public:
    FrameDialog(FrameForm& form, Prompts& prompts);

  protected:
    std::optional<LRESULT> onSent(UINT message, WPARAM wParam, LPARAM lParam) override;
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;

  private:
    FrameForm& frame_;
};

}  // namespace korvane
