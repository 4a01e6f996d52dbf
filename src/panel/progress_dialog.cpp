#include "panel/progress_dialog.h"

#include <cstdio>

#include "resources/ids.h"
#include "ui/controls.h"

namespace korvane {
namespace {

constexpr int complete = 100;
constexpr int notStarted = -1;

}  // namespace

ProgressDialog::ProgressDialog(TransferRunner::Start start, WindowProgressSink::Send send)
    : Dialog(IDD_PROGRESS),
      start_(std::move(start)),
      sink_(std::make_shared<WindowProgressSink>(progressMessage, failureMessage, send)) {}

// Here too, for the case that no window was made or its initialisation failed.
ProgressDialog::~ProgressDialog() {
    sink_->detach();
}

bool ProgressDialog::onInit() {
    control<ProgressBar>(IDC_PROGRESS_BAR).setRange(0, complete);
    sink_->attach(hwnd());
    if (start_(sink_) != 0) end(notStarted);
    return true;
}

// Neither Esc nor Alt+F4 closes it, which come here as Cancel.
bool ProgressDialog::onCommand(int, int, HWND) {
    return true;
}

void ProgressDialog::onDestroy() {
    sink_->detach();
}

std::optional<INT_PTR> ProgressDialog::onMessage(UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case progressMessage:
        case WindowProgressSink::standIn(progressMessage):
            showProgress(static_cast<int>(wParam));
            return TRUE;
        case failureMessage:
        case WindowProgressSink::standIn(failureMessage):
            end(static_cast<int>(wParam));
            return TRUE;
        default:
            return std::nullopt;
    }
}

void ProgressDialog::showProgress(int percent) {
    control<ProgressBar>(IDC_PROGRESS_BAR).setPosition(percent);
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%d%c", percent, '%');
    control<Static>(IDC_PROGRESS_TEXT).setText(text.data());
    if (percent >= complete) end(0);
}

}  // namespace korvane
