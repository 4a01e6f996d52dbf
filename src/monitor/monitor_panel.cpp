#include "monitor/monitor_panel.h"

#include <algorithm>
#include <stdexcept>
#include <uxtheme.h>

#include "resources/ids.h"

namespace korvane {
namespace {

constexpr UINT periodMs = 1000;

constexpr std::array<int, Lamps::inputCount> inputLamps = {IDC_LAMP_DATA_INPUT, IDC_LAMP_1PPS,
                                                           IDC_LAMP_10M, IDC_LAMP_TOD};

// From the edges of the tab control to the page in it, in pixels; the tabs are above.
constexpr int pageMarginX = 2, pageMarginY = 20;

// Around the title of a tab, in pixels.
constexpr int tabPaddingX = 12, tabPaddingY = 3;

}  // namespace

MonitorPanel::MonitorPanel(const StatusSource& source)
    : TimedPage(IDD_MONITOR_PAGE, periodMs),
      source_(source),
      structure_(source),
      services_(source),
      graphic_(source) {}

bool MonitorPanel::onInit() {
    loadLamps();
    createPages();
    const auto tabs = control<Tab>(IDC_MONITOR_TABS);
    tabs.setPadding(scaled(tabPaddingX), scaled(tabPaddingY));
    for (const char* title : {"复用帧结构", "业务列表", "图形化监控"}) tabs.append(title);
    placePages();
    showPage(0);
    startAll();
    return true;
}

// The template's own lamps do not know the colour of the ground that they are on.
void MonitorPanel::loadLamps() {
    red_ = loadBitmap(IDB_LAMP_RED);
    green_ = loadBitmap(IDB_LAMP_GREEN);
    if (!red_ || !green_) throw std::runtime_error("a lamp's picture was refused");
    const auto replace = [this](int id) {
        DeleteObject(control<Static>(id).setBitmap(red_.get()));
    };
    std::ranges::for_each(inputLamps, replace);
    replace(IDC_LAMP_LINK);
}

// In front of the tab control, which would paint over them, and on the same ground as it.
void MonitorPanel::createPages() {
    for (TimedPage* page : pages()) {
        if (!page->create(hwnd())) throw std::runtime_error("a page of the monitor was refused");
        EnableThemeDialogTexture(page->hwnd(), ETDT_ENABLETAB);
        SetWindowPos(page->hwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

std::optional<LRESULT> MonitorPanel::onNotify(const NMHDR& header) {
    if (header.idFrom != IDC_MONITOR_TABS || header.code != TCN_SELCHANGE) return std::nullopt;
    showPage(control<Tab>(IDC_MONITOR_TABS).selected());
    return 0;
}

void MonitorPanel::showPage(int index) {
    const auto all = pages();
    for (TimedPage* page : all) page->show(false);
    if (index >= 0 && index < static_cast<int>(all.size()))
        all[static_cast<std::size_t>(index)]->show(true);
}

void MonitorPanel::startAll() {
    for (TimedPage* page : pages()) page->startTimer();
    startTimer();
}

void MonitorPanel::stopAll() {
    for (TimedPage* page : pages()) page->stopTimer();
    stopTimer();
}

void MonitorPanel::tick() {
    control<Static>(IDC_TIME_OF_DAY).setText(timeOfDayLine(source_));
    const Lamps now = lamps(source_);
    for (std::size_t i = 0; i < inputLamps.size(); ++i) light(inputLamps[i], now.inputs[i]);
    light(IDC_LAMP_LINK, now.link);
}

void MonitorPanel::light(int id, Lamp lamp) {
    if (lamp == Lamp::Unchanged) return;
    const auto picture = control<Static>(id);
    const HBITMAP wanted = lamp == Lamp::Alarm ? red_.get() : green_.get();
    if (picture.bitmap() != wanted) picture.setBitmap(wanted);
}

void MonitorPanel::onSize(int width, int height) {
    const auto frame = control<Static>(IDC_LAMP_FRAME);
    const auto tabs = control<Tab>(IDC_MONITOR_TABS);
    RECT frameArea = frame.area(), tabArea = tabs.area();
    frameArea.right = tabArea.right = width;
    tabArea.bottom = height;
    frame.place(frameArea);
    tabs.place(tabArea);
    placePages();
}

void MonitorPanel::placePages() {
    RECT area = control<Tab>(IDC_MONITOR_TABS).area();
    InflateRect(&area, -scaled(pageMarginX), -scaled(pageMarginY));
    for (TimedPage* page : pages())
        if (page->hwnd()) page->place(area);
}

void MonitorPanel::onDestroy() {
    stopAll();
    for (TimedPage* page : pages()) page->destroy();
    red_.reset();
    green_.reset();
}

}  // namespace korvane
