#include "tour.h"

#include <utility>

#include "console.h"
#include "text/text.h"

namespace korvane::host {

namespace {

// Control of the panel's body that nothing else has: the button that shows its first page.
constexpr int firstPageButton = 21;

void print(const std::string& line) {
    writeConsole(Channel::output, line + "\n");
}

std::string numbered(std::size_t number) {
    const std::string digits = std::to_string(number);
    return digits.size() < 2 ? "0" + digits : digits;
}

}  // namespace

Tour::Tour(const Robot& robot, HWND host, HostOptions options)
    : robot_(robot),
      host_(host),
      options_(std::move(options)),
      directory_(toWide(options_.tourDirectory)) {
    std::filesystem::create_directories(directory_);
}

std::filesystem::path Tour::file(std::string_view name) const {
    return directory_ / toWide(name);
}

bool Tour::run() {
    const auto& steps = options_.recover ? recoverySteps() : tourSteps();
    for (std::size_t i = 0; i < steps.size(); ++i)
        if (!runStep(steps[i], i + 1)) return false;
    print("tour: all " + std::to_string(steps.size()) + " steps went well, " +
          std::to_string(pictures_.size()) + " pictures");
    return true;
}

bool Tour::runStep(const TourStep& step, std::size_t number) {
    notes_.clear();
    const std::string head = numbered(number) + " " + step.name;
    try {
        if (step.simulatedOnly && !simulated())
            note("not a simulated device");
        else
            step.run(*this);
        checkQuiet();
        print("ok   " + head + ": " + notes_);
        return true;
    } catch (const std::exception& error) {
        print("FAIL " + head + ": " + notes_ + (notes_.empty() ? "" : "; ") + error.what());
        pictureFailure();
        return false;
    }
}

// A message that nobody asked for must not pass unseen.
void Tour::checkQuiet() const {
    robot_.settle();
    for (HWND window : robot_.topWindows())
        if (window != host_) robot_.fail("something is open that should not be");
    expect(IsWindowEnabled(host_), "the main window does not take input");
}

void Tour::pictureFailure() noexcept {
    try {
        for (HWND window : robot_.topWindows())
            robot_.savePicture(window,
                               file(window == host_ ? "failed-main.png" : "failed-open.png"));
    } catch (const std::exception& error) {
        print(std::string("no picture of the failure: ") + error.what());
    }
}

void Tour::note(std::string_view text) {
    if (!notes_.empty()) notes_ += "; ";
    notes_ += text;
}

void Tour::picture(HWND window, const std::string& name) {
    robot_.settle();
    robot_.savePicture(window, file(name + ".png"));
    pictures_.insert(name);
}

void Tour::expect(bool holds, std::string_view what) const {
    if (!holds) robot_.fail(what);
}

HWND Tour::body() const {
    return GetParent(robot_.waitControl(host_, firstPageButton));
}

HWND Tour::visiblePage(HWND parent) const {
    const std::vector<HWND> pages = robot_.childDialogs(parent);
    expect(pages.size() == 1, "not exactly one page is shown");
    return pages.front();
}

void Tour::answerBox(std::string_view text, int button, const std::string& pictureName) {
    HWND box = robot_.waitBox(text);
    picture(box, pictureName);
    robot_.answer(box, button);
}

}  // namespace korvane::host
