#include "runtime/thread.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

#include "recording_error_box.h"
#include "runtime/exceptions.h"
#include "runtime/thread_ref.h"
#include "system_facts.h"
#include "worker.h"

namespace nox_pub::mswin {
namespace {

using test::longEnoughMs;
using test::untilStopped;
using test::Worker;

class ThreadTest : public testing::Test {
  protected:
    // Runs the work to its end; the exit code.
    std::uint32_t exitCodeOf(Worker::Work work) {
        Worker worker(std::move(work), box_);
        EXPECT_TRUE(worker.start());
        EXPECT_TRUE(worker.stop(longEnoughMs, false));
        return worker.exitCode();
    }

    test::RecordingErrorBox box_;
};

TEST_F(ThreadTest, RunsAfterStartWithItsOwnIdAndEndsWithItsResult) {
    DWORD id = 0;
    Worker worker([&](Worker& self) {
        id = GetCurrentThreadId();
        return untilStopped(self) + 42;
    });
    EXPECT_EQ(worker.name(), "工作线程");
    EXPECT_EQ(worker.exitCode(), 259u);
    EXPECT_EQ(id, 0u);
    EXPECT_TRUE(worker.start());
    EXPECT_TRUE(worker.stop(longEnoughMs, false));
    EXPECT_EQ(worker.exitCode(), 42u);
    EXPECT_EQ(id, worker.id());
    EXPECT_NE(id, GetCurrentThreadId());
    EXPECT_TRUE(worker.stop(0, false));  // it is still ended
}

TEST_F(ThreadTest, HasThePriorityItIsGiven) {
    Worker worker(&untilStopped, box_, THREAD_PRIORITY_LOWEST);
    EXPECT_EQ(worker.getPriority(), THREAD_PRIORITY_LOWEST);
    EXPECT_TRUE(worker.setPriority(THREAD_PRIORITY_BELOW_NORMAL));
    EXPECT_EQ(worker.getPriority(), THREAD_PRIORITY_BELOW_NORMAL);
    EXPECT_FALSE(worker.setPriority(4711));
    EXPECT_EQ(worker.getPriority(), THREAD_PRIORITY_BELOW_NORMAL);
    EXPECT_TRUE(worker.stop(longEnoughMs, false));
}

TEST_F(ThreadTest, OneThatWasNeverStartedSeesTheRequestAndEnds) {
    Worker worker([](Worker& self) { return untilStopped(self) + 7; });
    EXPECT_TRUE(worker.stop(longEnoughMs, false));
    EXPECT_EQ(worker.exitCode(), 7u);
}

TEST_F(ThreadTest, OneThatIgnoresTheRequestIsLeftAloneOrEndedByForce) {
    Event running;
    Worker worker([&](Worker&) {
        running.signal();
        for (;;) Sleep(1);
        return 0;
    });
    ASSERT_TRUE(worker.start());
    ASSERT_TRUE(running.wait(longEnoughMs));
    EXPECT_FALSE(worker.stop(20, false));
    EXPECT_EQ(worker.exitCode(), 259u);
    EXPECT_TRUE(worker.stop(20, true));
    EXPECT_EQ(worker.exitCode(), 0xFFFFFFFFu);
}

TEST_F(ThreadTest, CannotWaitForItself) {
    EXPECT_EQ(exitCodeOf([](Worker& self) {
                  const bool stopped = self.stop(longEnoughMs, true);
                  return stopped || !self.stopRequested() ? 1 : 5;
              }),
              5u);
}

TEST_F(ThreadTest, WhatEscapesIsShownAndEndsTheThreadWithMinusOne) {
    EXPECT_EQ(exitCodeOf([](Worker&) -> int { throw std::runtime_error("文本 100%"); }), -1u);
    EXPECT_EQ(exitCodeOf([](Worker&) -> int { throw OSError("os", 5); }), -1u);
    EXPECT_EQ(exitCodeOf([](Worker&) -> int { throw 42; }), -1u);
    const test::RecordingErrorBox::Shown expected = {
        {"工作线程", "文本 100%"}, {"工作线程", "os"}, {"工作线程", "<unknown exception>"}};
    EXPECT_EQ(box_.shown(), expected);
}

TEST_F(ThreadTest, FaultsThatEscapeAreShownWithTheirReport) {
    const std::pair<Worker::Work, const char*> faults[] = {
        {[](Worker&) { return *static_cast<int volatile*>(nullptr); },
         "SE: 内存访问错误: 读  00000000\r\nesp="},
        {[](Worker&) {
             RaiseException(0xC0000017, 0, 0, nullptr);  // in code that cannot be unwound
             return 0;
         },
         "SE: unknown exception: -1073741801\r\nesp="},
    };
    for (const auto& [work, line] : faults) {
        EXPECT_EQ(exitCodeOf(work), -1u);
        ASSERT_FALSE(box_.shown().empty());
        const auto [caption, text] = box_.shown().back();
        EXPECT_EQ(caption, "工作线程");
        EXPECT_EQ(text.find(line), 0u) << text;
    }
}

TEST_F(ThreadTest, AFaultOrExceptionWhileReportingEndsTheThreadQuietly) {
    struct BadBox : ErrorBox {
        void show(std::string_view text, std::string_view) override {
            if (text == "throw") throw std::runtime_error("box");
            RaiseException(0xC0000017, 0, 0, nullptr);
        }
    } bad;
    for (const char* text : {"throw", "fault"}) {
        Worker worker([=](Worker&) -> int { throw std::runtime_error(text); }, bad);
        EXPECT_TRUE(worker.stop(longEnoughMs, false));
        EXPECT_EQ(worker.exitCode(), -1u);
    }
}

TEST_F(ThreadTest, AFaultThatIsCaughtInsideCostsNothing) {
    EXPECT_EQ(exitCodeOf([](Worker&) {
                  try {
                      return *static_cast<int volatile*>(nullptr);
                  } catch (const std::logic_error&) {
                      return 3;
                  }
              }),
              3u);
    EXPECT_TRUE(box_.shown().empty());
}

BOOL CALLBACK findCaption(HWND window, LPARAM found) {
    wchar_t caption[32] = {};
    GetWindowTextW(window, caption, 32);
    if (std::wstring_view(caption) != L"工作线程") return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

TEST_F(ThreadTest, TheSystemsBoxShowsTextCaptionAndIconUntilItIsClosed) {
    Worker worker([](Worker&) -> int { throw std::runtime_error("出错了"); });
    ASSERT_TRUE(worker.start());
    HWND window = nullptr;
    while (!window && !worker.ended()) {
        EnumThreadWindows(worker.id(), &findCaption, reinterpret_cast<LPARAM>(&window));
        if (window && !IsWindowVisible(window)) window = nullptr;
        Sleep(1);
    }
    ASSERT_NE(window, nullptr) << "no box came up; is there a display?";
    constexpr int textControl = 0xFFFF;
    wchar_t text[32] = {};
    GetDlgItemTextW(window, textControl, text, 32);
    EXPECT_STREQ(text, L"出错了");
    EXPECT_FALSE(worker.ended());
    PostMessageW(window, WM_COMMAND, IDOK, 0);
    EXPECT_TRUE(worker.stop(longEnoughMs, false));
    EXPECT_EQ(worker.exitCode(), -1u);
}

TEST_F(ThreadTest, TwoHundredLivesLeakNoHandle) {
    const auto live = [] {
        Event running;
        ThreadRef thread(new Worker([&](Worker& self) {
            running.signal();
            return untilStopped(self);
        }));
        thread->start();
        running.wait(longEnoughMs);
        thread.release(longEnoughMs);
    };
    live();  // what the system sets up once is there now
    const int before = test::openHandles();
    ASSERT_GT(before, 0);
    for (int i = 0; i < 200; ++i) live();
    // A few may have been opened by the runtimes meanwhile; a leak would be two hundred or more.
    EXPECT_LT(test::openHandles(), before + 20);
}

TEST_F(ThreadTest, AThreadThatCannotBeCreatedThrows) {
    const test::ExhaustedAddressSpace exhausted;
    try {
        const Worker worker(&untilStopped);
        FAIL() << "there was still room";
    } catch (const ThreadError& error) {
        EXPECT_STREQ(error.what(), "creating thread 工作线程");
        EXPECT_EQ(error.code(), static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
    }
}

}  // namespace
}  // namespace nox_pub::mswin
