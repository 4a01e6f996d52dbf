#include "panel/panel_body.h"

#include <algorithm>
#include <new>

#include "editors/form_windows.h"
#include "panel/about_dialog.h"
#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {
namespace {

// In the order of the pages.
constexpr std::array pageButtons = {IDC_SHOW_INPUT_CHANNELS, IDC_SHOW_CONTROL_TABLES,
                                    IDC_SHOW_MONITOR, IDC_SHOW_SYSTEM};

// Edits are made in a dozen dialogs, which need not tell; to look at the whole configuration takes
// half a millisecond.
constexpr UINT_PTR workTimer = 1;
constexpr UINT workPeriodMs = 250;

// In the order of KeptWork::Notice.
constexpr std::array<std::string_view, 3> workNotices = {"", "有修改尚未设置到设备",
                                                         "有上次未设置到设备的修改"};

// From the frame to the pages in it, in pixels.
constexpr RECT frameMargins = {5, 10, 5, 5};

}  // namespace

PanelBody::PanelBody(DeviceManager& manager, const PageMaker& makePages)
    : Dialog(IDD_PANEL_BODY),
      manager_(manager),
      forms_(prompts_),
      set_(makePages({manager, prompts_, forms_, transfers_,
                      [this] { showPage(PanelPages::ControlTables); },
                      [this] { showPage(PanelPages::System); }})),
      controlTables_(std::move(set_.tables)),
      stack_({set_.inputChannels.get(), &controlTables_, set_.monitor.get(), set_.system.get()}),
      pages_({set_.inputChannels.get(), &controlTables_, set_.monitor.get(), set_.system.get()}),
      commands_(manager, prompts_, pages_, transfers_) {}

bool PanelBody::onInit() {
    useEditorWindows(forms_);
    stack_.create(hwnd());
    placePages();
    showPage(PanelPages::InputChannels);
    set_.inputChannels->refresh();
    controlTables_.refresh();
    tendWork();
    SetTimer(hwnd(), workTimer, workPeriodMs, nullptr);
    // The focus is the host's to give.
    return false;
}

bool PanelBody::onCommand(int id, int notification, HWND) {
    if (notification != BN_CLICKED) return false;
    const auto* button = std::ranges::find(pageButtons, id);
    if (button == pageButtons.end()) {
        const bool known = runCommand(id);
        tendWork();
        return known;
    }
    showPage(static_cast<std::size_t>(button - pageButtons.begin()));
    return true;
}

bool PanelBody::runCommand(int id) {
    switch (id) {
        case IDC_SAVE_TO_DEVICE:
            commands_.save();
            return true;
        case IDC_LOAD_FROM_DEVICE:
            commands_.load();
            return true;
        case IDC_REBOOT:
            commands_.reboot();
            return true;
        case IDC_RESTORE_DEFAULTS:
            commands_.restoreDefaults();
            return true;
        case IDC_EXPORT:
            commands_.exportFile();
            return true;
        case IDC_IMPORT:
            commands_.importFile();
            return true;
        case IDC_RECOVER_WORK:
            commands_.recoverWork();
            return true;
        case IDC_DISCARD_WORK:
            commands_.discardWork();
            return true;
        case IDC_ABOUT:
            showAbout();
            return true;
        default:
            return false;
    }
}

void PanelBody::showAbout() {
    AboutDialog(deviceVersionText(manager_.model().tables().params264)).showModal();
}

void PanelBody::showPage(std::size_t index) {
    stack_.show(index);
    for (std::size_t i = 0; i < pageButtons.size(); ++i)
        control<Button>(pageButtons[i]).setChecked(i == index);
}

// The buttons stay, but for About, which keeps to the right; the frame takes what there is.
void PanelBody::onSize(int width, int height) {
    const auto frame = control<Static>(IDC_PAGE_FRAME);
    const auto about = control<Button>(IDC_ABOUT);
    RECT frameArea = frame.area(), aboutArea = about.area();
    const LONG margin = frameArea.left;
    frameArea.right = width - margin;
    frameArea.bottom = height - margin;
    OffsetRect(&aboutArea, frameArea.right - aboutArea.right, 0);
    about.place(aboutArea);
    frame.place(frameArea);
    placePages();
}

void PanelBody::onTimer(UINT_PTR timer) {
    if (timer == workTimer) tendWork();
}

void PanelBody::onDestroy() {
    KillTimer(hwnd(), workTimer);
}

// A text that is set is painted, so only another one is. Without memory the next tick tries again.
void PanelBody::tendWork() {
    try {
        const KeptWork::Notice notice = manager_.tendWork();
        const std::string_view text = workNotices[static_cast<std::size_t>(notice)];
        const auto line = control<Static>(IDC_WORK_NOTICE);
        if (line.text() == text) return;
        line.setText(text);
        for (const int id : {IDC_RECOVER_WORK, IDC_DISCARD_WORK})
            control<Button>(id).show(notice == KeptWork::Notice::FromLastTime);
    } catch (const std::bad_alloc&) {
    }
}

void PanelBody::placePages() {
    RECT area = control<Static>(IDC_PAGE_FRAME).area();
    area.left += scaled(frameMargins.left);
    area.top += scaled(frameMargins.top);
    area.right -= scaled(frameMargins.right);
    area.bottom -= scaled(frameMargins.bottom);
    stack_.place(area);
}

}  // namespace korvane
