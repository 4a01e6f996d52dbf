#include "panel/panel_body.h"

#include <algorithm>
#include <stdexcept>

#include "monitor/monitor_panel.h"
#include "panel/about_dialog.h"
#include "panel/control_tables_page.h"
#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {
namespace {

// In the order of the pages.
constexpr std::array pageButtons = {IDC_SHOW_INPUT_CHANNELS, IDC_SHOW_CONTROL_TABLES,
                                    IDC_SHOW_MONITOR, IDC_SHOW_SYSTEM};

// From the frame to the pages in it, in pixels.
constexpr RECT frameMargins = {5, 10, 5, 5};

}  // namespace

PanelBody::PanelBody(DeviceManager& manager)
    : Dialog(IDD_PANEL_BODY),
      manager_(manager),
      commands_(manager, prompts_, *this, transfers_),
      pages_{std::make_unique<Page>(IDD_INPUT_CHANNEL_PAGE), std::make_unique<ControlTablesPage>(),
             std::make_unique<MonitorPanel>(manager), std::make_unique<Page>(IDD_SYSTEM_PAGE)} {}

bool PanelBody::onInit() {
    prompts_.setOwner(hwnd());
    transfers_.setOwner(hwnd());
    for (const auto& page : pages_)
        if (!page->create(hwnd())) throw std::runtime_error("a page of the panel was refused");
    placePages();
    showPage(InputChannels);
    pages_[InputChannels]->refresh();
    pages_[ControlTables]->refresh();
    // The focus is the host's to give.
    return false;
}

bool PanelBody::onCommand(int id, int notification, HWND) {
    if (notification != BN_CLICKED) return false;
    const auto* button = std::ranges::find(pageButtons, id);
    if (button == pageButtons.end()) return runCommand(id);
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
        case IDC_ABOUT:
            showAbout();
            return true;
        default:
            return false;
    }
}

void PanelBody::showAbout() {
    AboutDialog(deviceVersionText(manager_.model().tables().params264)).showModal(hwnd());
}

void PanelBody::refresh() {
    for (const auto index : {InputChannels, ControlTables, System}) pages_[index]->refresh();
}

void PanelBody::showPage(std::size_t index) {
    for (const auto& page : pages_) page->show(false);
    pages_[index]->show(true);
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

void PanelBody::placePages() {
    RECT area = control<Static>(IDC_PAGE_FRAME).area();
    area.left += scaled(frameMargins.left);
    area.top += scaled(frameMargins.top);
    area.right -= scaled(frameMargins.right);
    area.bottom -= scaled(frameMargins.bottom);
    for (const auto& page : pages_)
        if (page->hwnd()) page->place(area);
}

}  // namespace korvane
