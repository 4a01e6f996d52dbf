#pragma once

#include <windows.h>

#include <filesystem>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host_options.h"
#include "robot.h"

namespace korvane::host {

class Tour;

// One thing that the tour does. `name` begins its line of the transcript; `run` notes what it saw
// and throws when that was not what had to be.
struct TourStep {
    const char* name;
    void (*run)(Tour&);
    bool simulatedOnly = false;  // left out where the device is a real one
};

// All steps, in their order. Each begins and ends with nothing open but the main window.
const std::vector<TourStep>& tourSteps();
// Those of a tour that only takes in, and exports, what a run of the host left unsaved.
const std::vector<TourStep>& recoverySteps();

// Operates the panel in the host's window as a person would, against the device at the options'
// address. Leaves a PNG of every page and dialog in the tour directory and tells each step in one
// line on the standard output. Belongs to a thread of its own, as the robot does.
class Tour {
  public:
    // Makes the directory if need be.
    Tour(const Robot& robot, HWND host, HostOptions options);

    // Runs the steps up to the first that fails; true when all went well.
    bool run();

    const Robot& robot() const { return robot_; }
    HWND host() const { return host_; }
    const HostOptions& options() const { return options_; }
    // Whether the device is a simulated one that listens to us.
    bool simulated() const { return !options_.consoleFile.empty(); }
    // A file in the tour directory.
    std::filesystem::path file(std::string_view name) const;

    // Adds to the line of the running step.
    void note(std::string_view text);
    // Leaves NAME.png. The window must be up; what its thread has yet to do is done first.
    void picture(HWND window, const std::string& name);
    // Fails the step with `what` unless `holds`.
    void expect(bool holds, std::string_view what) const;

    // The dialog that holds the panel's command buttons.
    HWND body() const;
    // The page that the panel shows in its frame, or the table page in that of the table list:
    // the one child dialog that is visible in `parent`.
    HWND visiblePage(HWND parent) const;
    // Answers the message with exactly this text after taking its picture.
    void answerBox(std::string_view text, int button, const std::string& pictureName);

  private:
    bool runStep(const TourStep& step, std::size_t number);
    void checkQuiet() const;
    void pictureFailure() noexcept;

    const Robot& robot_;
    HWND host_;
    HostOptions options_;
    std::filesystem::path directory_;
    std::string notes_;
    std::set<std::string> pictures_;  // names: some are taken again
};

}  // namespace korvane::host
