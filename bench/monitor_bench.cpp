// What a live view adds to what the system itself needs, as a ratio of two measurements of the same
// run: a refresh of the fullest tree against the bare loop that inserts the same texts.

#include <string>
#include <vector>

#include "bench/ratio.h"
#include "monitor/frame_structure.h"
#include "monitor/frame_structure_page.h"
#include "monitor/scripted_status.h"
#include "resources/ids.h"
#include "text/text.h"
#include "ui/controls.h"
#include "ui/module.h"

namespace korvane {
namespace {

using test::ScriptedStatus;

// All that fits: 40 frames of 8 sub-frames of 8 segments.
void fill(ScriptedStatus& source) {
    SubFrameStats subFrame{0, 0, 54321, 0, {}, 8, {}};
    subFrame.segments.fill({1234567, 7654321, 384, 0});
    FrameStats frame{100, 0, 0, {}, 1, {}, 8, 0, {}};
    frame.subFrames.fill(subFrame);
    source.image.frameCount = 40;
    source.image.frames.fill(frame);
    source.imageResult = 0;
}

// With other values than before.
void refresh(const TimedPage& page, ScriptedStatus& source) {
    for (FrameStats& frame : source.image.frames) {
        frame.effectiveData = (frame.effectiveData + 1) % 100;
        for (SubFrameStats& subFrame : frame.subFrames) ++subFrame.effectiveLength;
    }
    SendMessageW(page.hwnd(), WM_TIMER, 1, 0);
}

struct WideLine {
    int depth;
    bool hasChildren;
    std::wstring text;
};

std::vector<WideLine> wideLines(const DeviceStatusImage& status) {
    std::vector<WideLine> lines;
    describeFrames(status, [&lines](int depth, std::string_view text) {
        if (!lines.empty()) lines.back().hasChildren = depth > lines.back().depth;
        lines.push_back({depth, false, toWide(text)});
    });
    return lines;
}

// What any program has to do to have these lines in a tree, expanded.
void bareLoop(HWND tree, std::vector<WideLine>& lines) {
    HTREEITEM path[8] = {};
    SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
    SendMessageW(tree, TVM_DELETEITEM, 0, reinterpret_cast<LPARAM>(TVI_ROOT));
    for (WideLine& line : lines) {
        TVINSERTSTRUCTW place{};
        place.hParent = line.depth > 0 ? path[line.depth - 1] : TVI_ROOT;
        place.hInsertAfter = TVI_LAST;
        place.item.mask = TVIF_TEXT | TVIF_STATE;
        place.item.state = line.hasChildren ? TVIS_EXPANDED : 0;
        place.item.stateMask = TVIS_EXPANDED;
        place.item.pszText = line.text.data();
        path[line.depth] = reinterpret_cast<HTREEITEM>(
            SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&place)));
    }
    SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(tree, nullptr, TRUE);
}

bool benchTree(HWND parent, ScriptedStatus& source) {
    FrameStructurePage page(source);
    page.create(parent);
    page.show(true);
    const HWND tree = GetDlgItem(page.hwnd(), IDC_STRUCTURE_TREE);
    std::vector<WideLine> lines = wideLines(source.image);
    return bench::meets(
        "tree refresh / bare loop", 1.15, 15, [&] { refresh(page, source); },
        [&] { bareLoop(tree, lines); });
}

int run() {
    const ActivationScope activation;
    const HWND parent = CreateWindowExW(0, L"Static", L"", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0,
                                        1024, 768, nullptr, nullptr, nullptr, nullptr);
    ScriptedStatus source;
    fill(source);
    const bool met = benchTree(parent, source);
    DestroyWindow(parent);
    return met ? 0 : 1;
}

}  // namespace
}  // namespace korvane

int main() {
    return korvane::run();
}
