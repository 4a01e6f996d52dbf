#include "editors/frame_list_page.h"

#include "resources/ids.h"

namespace korvane {

FrameListPage::FrameListPage(const Editing& editing, TableKind kind)
    : FrameListPageParts{{editing.model, kind}, {editing, kind}}, FormPage(form, editing.prompts) {
    addList(frames, editing.prompts, IDC_FRAME_LIST, firstListMenu);
}

}  // namespace korvane
