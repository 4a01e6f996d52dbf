#include "monitor/monitor_panel.h"

#include <algorithm>
#include <stdexcept>
#include <uxtheme.h>

#include "monitor/lamp_picture.h"
#include "resources/ids.h"

namespace korvane {
namespace {

// From the edges of the tab control to the page in it, in pixels; the tabs are above.
constexpr int pageMarginX = 2, pageMarginY = 20;

// Around the title of a tab, in pixels.
constexpr int tabPaddingX = 12, tabPaddingY = 3;

}  // namespace

MonitorPanel::MonitorPanel(const StatusSource& source)
    : TimedPage(IDD_MONITOR_PAGE, monitorPeriodMs),
      source_(source),
      structure_(source),
      services_(source),
      graphic_(source),
      stack_({&structure_, &services_, &graphic_}) {}

bool MonitorPanel::onInit() {
    loadLamps();
    createPages();
    const auto tabs = control<Tab>(IDC_MONITOR_TABS);
    tabs.setPadding(scaled(tabPaddingX), scaled(tabPaddingY));
    for (const MonitorView& view : monitorViews) tabs.append(view.title);
    placePages();
    stack_.show(0);
    startAll();
    return true;
}

void MonitorPanel::loadLamps() {
    const int size = scaled(lampSize);
    for (const Lamp lamp : {Lamp::Normal, Lamp::Alarm})
        if (!(picture(lamp) = lampPicture(lamp, size)))
            throw std::runtime_error("a lamp's picture was refused");
    for (const InputLamp& lamp : inputLamps) replaceLamp(lamp.control, size);
    replaceLamp(IDC_LAMP_LINK, size);
}

// The template's own lamps know neither the colour of the ground that they are on nor the screen.
void MonitorPanel::replaceLamp(int id, int size) {
    const auto lamp = control<Static>(id);
    DeleteObject(lamp.setBitmap(picture(Lamp::Alarm).get()));
    const RECT caption = Static(GetWindow(lamp.window(), GW_HWNDNEXT)).area();
    const LONG left = lamp.area().left, top = (caption.top + caption.bottom - size) / 2;
    lamp.place({left, top, left + size, top + size});
}

// In front of the tab control, which would paint over them, and on the same ground as it.
void MonitorPanel::createPages() {
    stack_.create(hwnd());
    for (TimedPage* page : pages()) {
        EnableThemeDialogTexture(page->hwnd(), ETDT_ENABLETAB);
        SetWindowPos(page->hwnd(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    }
}

std::optional<LRESULT> MonitorPanel::onNotify(const NMHDR& header) {
    if (header.idFrom != IDC_MONITOR_TABS || header.code != TCN_SELCHANGE) return std::nullopt;
    stack_.show(static_cast<std::size_t>(control<Tab>(IDC_MONITOR_TABS).selected()));
    return 0;
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
    control<Static>(IDC_STALE_STATUS)
        .setText(stale_.line(source_.statusAgeMs(), std::time(nullptr)));
    const Lamps now = lamps(source_);
    for (std::size_t i = 0; i < inputLamps.size(); ++i) light(inputLamps[i].control, now.inputs[i]);
    light(IDC_LAMP_LINK, now.link);
}

void MonitorPanel::light(int id, Lamp lamp) {
    if (lamp == Lamp::Unchanged) return;
    const auto shown = control<Static>(id);
    const HBITMAP wanted = picture(lamp).get();
    if (shown.bitmap() != wanted) shown.setBitmap(wanted);
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
    stack_.place(area);
}

void MonitorPanel::onDestroy() {
    stopAll();
    for (TimedPage* page : pages()) page->destroy();
    for (Bitmap& bitmap : pictures_) bitmap.reset();
}

}  // namespace korvane
