#include "panel/progress_dialog.h"

#include <gtest/gtest.h>

#include "host/robot.h"
#include "resources/ids.h"

namespace korvane {
namespace {

using host::Robot;
using host::RobotThread;

constexpr const char* caption = "Korvane管理软件";

class ProgressDialogTest : public testing::Test {
  protected:
    TransferRunner::Start starting(int result = 0) {
        return [this, result](std::shared_ptr<ProgressSink> sink) {
            sink_ = std::move(sink);
            return result;
        };
    }
    std::shared_ptr<ProgressSink> sink_;
};

TEST_F(ProgressDialogTest, ShowsEachPercentageAndEndsAtAHundred) {
    RobotThread robot([this](Robot& r) {
        const HWND dialog = r.waitDialog(caption);
        const HWND text = r.waitControl(dialog, IDC_PROGRESS_TEXT);
        EXPECT_EQ(r.text(text), "0/1");
        EXPECT_EQ(r.text(GetDlgItem(dialog, IDC_STATIC)), "正在与设备通讯中...");
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDOK)));
        EXPECT_FALSE(IsWindowVisible(GetDlgItem(dialog, IDCANCEL)));
        for (const int percent : {0, 5, 99}) {
            sink_->progress(percent);
            const std::string shown = std::to_string(percent) + "%";
            r.waitFor(shown, [&] { return r.text(text) == shown; });
            EXPECT_EQ(r.send(GetDlgItem(dialog, IDC_PROGRESS_BAR), PBM_GETPOS), percent);
        }
        sink_->progress(100);
        r.waitGone(dialog);
    });
    EXPECT_EQ(ProgressDialog(starting()).run(nullptr), 0);
    sink_->failed(-2);  // into nothing: the window has gone
}

TEST_F(ProgressDialogTest, EndsWithTheCodeOfTheFailure) {
    for (const int code : {-8, -2, 1, 0x7FFFFFFF}) {
        RobotThread robot([&](Robot& r) {
            r.waitDialog(caption);
            sink_->progress(50);
            sink_->failed(code);
        });
        EXPECT_EQ(ProgressDialog(starting()).run(nullptr), code);
    }
}

TEST_F(ProgressDialogTest, CannotBeClosedWhileTheTransferRuns) {
    RobotThread robot([this](Robot& r) {
        const HWND dialog = r.waitDialog(caption);
        r.key(dialog, VK_ESCAPE);
        r.key(dialog, VK_RETURN);
        r.close(dialog);
        r.command(dialog, IDOK);
        r.command(dialog, IDCANCEL);
        // Posted behind all of those: when this has been handled, they have been too.
        sink_->progress(42);
        const HWND text = GetDlgItem(dialog, IDC_PROGRESS_TEXT);
        r.waitFor("42%", [&] { return r.text(text) == "42%"; });
        PostMessageW(dialog, ProgressDialog::progressMessage + 2, 0, 0);
        r.waitFor("an empty queue", [&] { return r.send(dialog, WM_NULL) == 0; });
        EXPECT_TRUE(IsWindowVisible(dialog));
        sink_->progress(100);
    });
    EXPECT_EQ(ProgressDialog(starting()).run(nullptr), 0);
}

TEST_F(ProgressDialogTest, EndsAtOnceWhenNothingWasStarted) {
    EXPECT_EQ(ProgressDialog(starting(-1)).run(nullptr), -1);
}

}  // namespace
}  // namespace korvane
