#include "tour_progress.h"

#include <iterator>
#include <set>

#include "text/text.h"
#include "tour.h"

namespace korvane::host {

namespace {

constexpr int progressBar = 1082, progressText = 1086;

HWND waitProgress(const Robot& robot) {
    return robot.waitFor("waited for the progress dialog", [&]() -> HWND {
        for (HWND window : robot.topWindows())
            if (IsWindowEnabled(window) && robot.findControl(window, progressBar) != nullptr)
                return window;
        return nullptr;
    });
}

}  // namespace

void watchProgress(Tour& tour, const std::string& name) {
    const Robot& robot = tour.robot();
    HWND progress = waitProgress(robot);
    std::set<std::string> shown;
    bool pictured = false;
    robot.waitFor("waited for the transfer to end", [&] {
        HWND text = robot.findControl(progress, progressText);
        if (text == nullptr) return true;
        wchar_t buffer[32] = {};
        InternalGetWindowText(text, buffer, std::size(buffer));
        shown.insert(toUtf8(buffer));
        if (!pictured && shown.size() > 2) {
            tour.picture(progress, name);
            pictured = true;
        }
        return false;
    });
    tour.note("progress dialog with " + std::to_string(shown.size()) + " percentages");
}

}  // namespace korvane::host
