#include "monitor/frame_structure_page.h"

#include "monitor/frame_structure.h"
#include "monitor/views.h"
#include "ui/copy_keys.h"
#include "ui/tree_fill.h"

namespace korvane {
FrameStructurePage::FrameStructurePage(const StatusSource& source)
    : RefreshPage(structureView, IDC_STRUCTURE_TREE, source) {}

bool FrameStructurePage::onInit() {
    control<Tree>(IDC_STRUCTURE_TREE).drawBuffered();
    return true;
}

std::optional<LRESULT> FrameStructurePage::onNotify(const NMHDR& header) {
    if (header.idFrom != IDC_STRUCTURE_TREE || header.code != TVN_KEYDOWN) return std::nullopt;
    const WORD key = reinterpret_cast<const NMTVKEYDOWN&>(header).wVKey;
    return copyBranch(control<Tree>(IDC_STRUCTURE_TREE), key);
}

void FrameStructurePage::redraw(const DeviceStatusImage& status) {
    TreeFill fill(control<Tree>(IDC_STRUCTURE_TREE));
    describeFrames(status, [&fill](int depth, std::string_view text) { fill.add(depth, text); });
}

}  // namespace korvane
