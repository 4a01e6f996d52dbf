#pragma once

#include "editors/frame_table.h"
#include "ui/form_page.h"

namespace korvane {

struct FrameListPageParts {
    FrameListForm form;
    FrameList frames;
};

// The page of one of the two multiplex tables.
class FrameListPage : private FrameListPageParts, public FormPage {
  public:
    FrameListPage(const Editing& editing, TableKind kind);
};

}  // namespace korvane
