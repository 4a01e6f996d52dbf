#include "editors/form_windows.h"

#include "editors/frame_dialog.h"
#include "resources/ids.h"

namespace korvane {

void useEditorWindows(WindowFormRunner& forms) {
    forms.useFor(IDD_FRAME, [](Form& form, Prompts& prompts) {
        return FrameDialog(dynamic_cast<FrameForm&>(form), prompts).showModal();
    });
}

}  // namespace korvane
