#include "editors/frame_dialog.h"

#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {

FrameDialog::FrameDialog(FrameForm& form, Prompts& prompts)
    : FormDialog(form, prompts), frame_(form) {
    addList(form.timeSlots(), IDC_TIME_SLOTS, secondListMenu);
    addList(form.subFrames(), IDC_SUB_FRAMES, firstListMenu);
}

std::optional<LRESULT> FrameDialog::onSent(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case askServiceId:
            return frame_.checkServiceId(wParam);
        case askCandidates:
            frame_.dropTaken(wParam, *reinterpret_cast<std::vector<InputChannelRecord>*>(lParam));
            return 0;
        case askBandwidth:
            return frame_.checkBandwidth(wParam);
        case askSubFrameId:
            return frame_.checkSubFrameId(static_cast<std::uint8_t>(wParam));
        default:
            return std::nullopt;
    }
}

std::optional<INT_PTR> FrameDialog::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_DRAWITEM) return FormDialog::onMessage(message, wParam, lParam);
    const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
    LevelBar(item.hwndItem).draw(item.hDC);
    return TRUE;
}

}  // namespace korvane
