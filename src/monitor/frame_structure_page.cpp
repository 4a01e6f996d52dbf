#include "monitor/frame_structure_page.h"

#include "monitor/frame_structure.h"
#include "resources/ids.h"
#include "ui/tree_fill.h"

namespace korvane {
namespace {

constexpr UINT periodMs = 1500;

}  // namespace

FrameStructurePage::FrameStructurePage(const StatusSource& source)
    : RefreshPage(IDD_FRAME_STRUCTURE_PAGE, periodMs, IDC_STRUCTURE_TREE, source) {}

bool FrameStructurePage::onInit() {
    control<Tree>(IDC_STRUCTURE_TREE).drawBuffered();
    return true;
}

void FrameStructurePage::redraw(const DeviceStatusImage& status) {
    TreeFill fill(control<Tree>(IDC_STRUCTURE_TREE));
    describeFrames(status, [&fill](int depth, std::string_view text) { fill.add(depth, text); });
}

}  // namespace korvane
