#include "panel/progress_dialog.h"

#include <gtest/gtest.h>

#include "resources/ids.h"
#include "support/robot.h"

namespace korvane {
namespace {

// As a system that lets only a window's own messages through.
BOOL WINAPI sendOwnOnly(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    return message >= WM_APP && SendNotifyMessageW(window, message, wParam, lParam);
}

class ProgressDialogTest : public testing::Test {
  protected:
    // The outcome of a transfer that `script` watches in its dialog and moves on by `sink_`.
    int run(std::function<void(Robot&, HWND)> script) {
        RobotThread robot([&](Robot& r) { script(r, r.waitDialog("Korvane管理软件")); });
        const auto start = [this](auto sink) {
            sink_ = std::move(sink);
            return 0;
        };
        return ProgressDialog(start, send_).run();
    }
    void expectProgress(Robot& r, HWND dialog, int percent) const {
        sink_->progress(percent);
        r.settle();
        EXPECT_EQ(r.text(GetDlgItem(dialog, IDC_PROGRESS_TEXT)), std::to_string(percent) + "%");
        EXPECT_EQ(r.send(GetDlgItem(dialog, IDC_PROGRESS_BAR), PBM_GETPOS), percent);
    }

    WindowProgressSink::Send send_ = &SendNotifyMessageW;
    std::shared_ptr<ProgressSink> sink_;
};

TEST_F(ProgressDialogTest, ShowsEachPercentageAndNothingButAHundredClosesIt) {
    const int outcome = run([this](Robot& r, HWND dialog) {
        EXPECT_EQ(r.text(GetDlgItem(dialog, IDC_PROGRESS_TEXT)), "0/1");
        EXPECT_EQ(r.text(GetDlgItem(dialog, IDC_STATIC)), "正在与设备通讯中...");
        for (const int percent : {0, 5, 99}) expectProgress(r, dialog, percent);
        for (const WORD key : {VK_ESCAPE, VK_RETURN}) r.key(dialog, key);
        r.close(dialog);
        for (const int button : {IDOK, IDCANCEL}) {
            EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, button)));
            r.command(dialog, button);
        }
        PostMessageW(dialog, ProgressDialog::progressMessage + 2, 0, 0);
        expectProgress(r, dialog, 42);
        EXPECT_TRUE(IsWindowVisible(dialog));
        sink_->progress(100);
        r.waitGone(dialog);
    });
    EXPECT_EQ(outcome, 0);
    sink_->failed(-2);  // into nothing: the window has gone
}

TEST_F(ProgressDialogTest, EndsWithTheCodeOfTheFailure) {
    for (const int code : {-8, -2, 1, 0x7FFFFFFF}) {
        const int outcome = run([&](Robot& r, HWND dialog) {
            expectProgress(r, dialog, 50);
            sink_->failed(code);
            r.waitGone(dialog);
        });
        EXPECT_EQ(outcome, code);
        send_ = &sendOwnOnly;  // the first of them as usual
    }
    EXPECT_EQ(ProgressDialog([](auto) { return -1; }).run(), -1) << "nothing was started";
}

}  // namespace
}  // namespace korvane
