#include "tour_faults.h"

#include <windows.h>

#include <array>
#include <fstream>

#include "text/text.h"
#include "tour.h"

namespace korvane::host {

namespace {

constexpr std::array<int, 4> inputLamps = {1110, 1112, 1113, 1114};  // data, 1PPS, 10M, TOD
constexpr int linkLamp = 1115, barChart = 1044, staleStatus = 1204;
constexpr COLORREF barColour = RGB(0, 0, 255);

void tell(Tour& tour, std::string_view line) {
    const std::string& console = tour.options().consoleFile;
    std::ofstream file(std::filesystem::path(toWide(console)), std::ios::binary | std::ios::app);
    file << line << '\n' << std::flush;
    tour.expect(file.good(), "the console cannot be written to: " + console);
}

LRESULT lamp(const Tour& tour, int id) {
    const Robot& robot = tour.robot();
    return robot.send(robot.waitControl(tour.body(), id), STM_GETIMAGE, IMAGE_BITMAP);
}

// For each input, '=' when its lamp is like that of the link, '!' when it is the other one.
std::string inputsAgainstLink(const Tour& tour) {
    std::string signs;
    for (const int id : inputLamps) signs += lamp(tour, id) == lamp(tour, linkLamp) ? '=' : '!';
    return signs;
}

void waitLamps(const Tour& tour, std::string_view signs) {
    tour.robot().waitFor("waited for the lamps to be " + std::string(signs),
                         [&] { return inputsAgainstLink(tour) == signs; });
}

void waitStale(const Tour& tour, bool stale) {
    const Robot& robot = tour.robot();
    HWND line = robot.waitControl(tour.body(), staleStatus);
    robot.waitFor("waited for the line about old status to come or go", [&] {
        const std::string text = robot.text(line);
        return stale ? text.ends_with(" 起未更新") : text.empty();
    });
}

// Looks where each bar is that is not very low.
bool showsBars(HWND chart) {
    RECT area{};
    GetClientRect(chart, &area);
    HDC source = GetDC(chart);
    bool found = false;
    for (LONG x = 0; x < area.right && !found; ++x)
        found = GetPixel(source, x, area.bottom * 4 / 5) == barColour;
    ReleaseDC(chart, source);
    return found;
}

}  // namespace

void visitAlarms(Tour& tour) {
    tell(tour, "alarms 0x28");
    waitLamps(tour, "!=!=");
    tour.expect(showsBars(tour.robot().waitControl(tour.body(), barChart)), "an empty chart");
    tour.picture(tour.host(), "1076-monitoring-alarms");
    tour.note("data input and 10M");
}

// The inputs' lamps stay as they were, for nothing is known about them. Then all is well again.
void visitLostLink(Tour& tour) {
    tell(tour, "fault silence");
    waitLamps(tour, "=!=!");
    HWND chart = tour.robot().waitControl(tour.body(), barChart);
    tour.robot().waitFor("waited for the chart to be empty", [&] { return !showsBars(chart); });
    waitStale(tour, true);
    tour.picture(tour.host(), "1076-monitoring-lost-link");
    tour.note("link");
    tell(tour, "clear silence");
    tell(tour, "alarms 0");
    waitLamps(tour, "====");
    waitStale(tour, false);
    tell(tour, "alarms auto");
    tour.note("found again");
}

}  // namespace korvane::host
