#include "editors/form_windows.h"

#include "editors/component_selection_dialog.h"
#include "editors/frame_dialog.h"
#include "editors/sub_frame_dialog.h"
#include "resources/ids.h"

namespace korvane {
namespace {

template <class Window, class FormType>
void useWindow(WindowFormRunner& forms, int dialog) {
    forms.useFor(dialog, [](Form& form, Prompts& prompts) {
        return Window(static_cast<FormType&>(form), prompts).showModal();
    });
}

}  // namespace

void useEditorWindows(WindowFormRunner& forms) {
    useWindow<FrameDialog, FrameForm>(forms, IDD_FRAME);
    useWindow<SubFrameDialog, SubFrameForm>(forms, IDD_SUB_FRAME);
    useWindow<ComponentSelectionDialog, ComponentSelectionForm>(forms, IDD_COMPONENT_SELECTION);
}

}  // namespace korvane
