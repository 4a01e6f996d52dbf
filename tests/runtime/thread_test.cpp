#include "runtime/thread.h"

#include <windows.h>

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>

#include "host/robot.h"
#include "runtime/event.h"
#include "runtime/exceptions.h"
#include "runtime/thread_ref.h"
#include "system_facts.h"
#include "worker.h"

namespace nox_pub::mswin {
namespace {

using test::longEnoughMs;
using test::untilStopped;
using test::Worker;

const std::string eventName = "测试-" + std::to_string(GetCurrentProcessId());

TEST(EventTest, StaysSignalledUntilItIsReset) {
    Event event;
    EXPECT_FALSE(event.wait(0));
    event.signal();
    EXPECT_TRUE(event.wait(0));
    EXPECT_TRUE(event.wait(0));
    event.reset();
    EXPECT_FALSE(event.wait(0));
}

TEST(EventTest, OnesOfTheSameNameAreOne) {
    Event first(eventName), second(eventName);
    const Event other(eventName + "x"), unnamed, unnamedToo;
    EXPECT_TRUE(second.existed());
    first.signal();
    EXPECT_TRUE(second.wait(0));
    for (const Event* alone : {&other, &unnamed, &unnamedToo}) {
        EXPECT_FALSE(alone->existed());
        EXPECT_FALSE(alone->wait(0));
    }
    EXPECT_FALSE(first.existed());
}

TEST(EventTest, ANameThatIsTakenByAnotherKindOfObjectFails) {
    const HANDLE mutex = CreateMutexA(nullptr, FALSE, "nox_pub:event:taken");
    try {
        const Event event("taken");
        FAIL();
    } catch (const EventError& error) {
        EXPECT_STREQ(error.what(), "cannot create: nox_pub:event:taken");
        EXPECT_EQ(error.code(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
    }
    CloseHandle(mutex);
}

TEST(ThreadTest, RunsAfterStartWithItsNameIdAndPriorityAndEndsWithItsResult) {
    DWORD id = 0;
    Worker worker(
        [&](Worker& self) {
            id = GetCurrentThreadId();
            return untilStopped(self) + 42;
        },
        systemErrorBox(), THREAD_PRIORITY_LOWEST);
    EXPECT_EQ(worker.name(), "工作线程");
    EXPECT_EQ(worker.getPriority(), THREAD_PRIORITY_LOWEST);
    EXPECT_TRUE(worker.setPriority(THREAD_PRIORITY_BELOW_NORMAL));
    EXPECT_FALSE(worker.setPriority(4711));
    EXPECT_EQ(worker.getPriority(), THREAD_PRIORITY_BELOW_NORMAL);
    EXPECT_EQ(worker.exitCode(), 259u);
    EXPECT_EQ(id, 0u);
    EXPECT_TRUE(worker.start());
    EXPECT_TRUE(worker.stop(longEnoughMs, false));
    EXPECT_EQ(worker.exitCode(), 42u);
    EXPECT_EQ(id, worker.id());
    EXPECT_NE(id, GetCurrentThreadId());
    EXPECT_TRUE(worker.stop(0, false));  // it is still ended
}

TEST(ThreadTest, OneThatIgnoresTheRequestIsLeftAloneOrEndedByForce) {
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

// Keeps caption and first line of what it is to show; may fail then.
struct RecordingErrorBox : ErrorBox {
    void show(std::string_view text, std::string_view caption) override {
        shown += std::string(caption) + ": " + std::string(text.substr(0, text.find("\r\n")));
        if (text == "throw") throw std::runtime_error("box");
        if (text == "fault") RaiseException(0xC0000017, 0, 0, nullptr);
    }
    std::string shown;
};

int readNull() {
    return *static_cast<int volatile*>(nullptr);
}

// None of them is started: to stop it is enough.
TEST(ThreadTest, WhatEscapesIsShownAndEndsTheThreadWithMinusOne) {
    const struct {
        Worker::Work work;
        std::uint32_t exitCode;
        const char* shown;
    } cases[] = {
        {[](Worker& self) { return untilStopped(self) + 7; }, 7, ""},
        // It cannot wait for itself.
        {[](Worker& self) { return self.stop(longEnoughMs, true) ? 0 : 5 + self.stopRequested(); },
         6, ""},
        {[](Worker&) -> int { throw std::runtime_error("文本 100%"); }, -1u, "工作线程: 文本 100%"},
        {[](Worker&) -> int { throw OSError("throw", 5); }, -1u, "工作线程: throw"},
        {[](Worker&) -> int { throw std::runtime_error("fault"); }, -1u, "工作线程: fault"},
        {[](Worker&) -> int { throw 42; }, -1u, "工作线程: <unknown exception>"},
        {[](Worker&) { return readNull(); }, -1u, "工作线程: SE: 内存访问错误: 读  00000000"},
    };
    for (const auto& [work, exitCode, shown] : cases) {
        RecordingErrorBox box;
        Worker worker(work, box);
        EXPECT_TRUE(worker.stop(longEnoughMs, false));
        EXPECT_EQ(worker.exitCode(), exitCode);
        EXPECT_EQ(box.shown, shown);
    }
}

TEST(ThreadTest, TheSystemsBoxShowsTextAndCaptionUntilItIsClosed) {
    Event ready;
    Worker worker([&](Worker&) -> int {
        IsGUIThread(TRUE);  // so that the robot can watch it
        ready.signal();
        throw std::runtime_error("出错了");
    });
    ASSERT_TRUE(worker.start());
    ASSERT_TRUE(ready.wait(longEnoughMs));
    const korvane::host::Robot robot(worker.id());
    const HWND box = robot.waitBox("出错了");
    EXPECT_EQ(robot.caption(box), "工作线程");
    EXPECT_FALSE(worker.ended());
    robot.answer(box, IDOK);
    EXPECT_TRUE(worker.stop(longEnoughMs, false));
    EXPECT_EQ(worker.exitCode(), -1u);
}

TEST(ThreadTest, TwoHundredLivesLeakNoHandle) {
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

TEST(ThreadTest, AThreadThatCannotBeCreatedThrows) {
    const test::ExhaustedAddressSpace exhausted;
    try {
        const Worker worker(&untilStopped);
        FAIL() << "there was still room";
    } catch (const ThreadError& error) {
        EXPECT_STREQ(error.what(), "creating thread 工作线程");
        EXPECT_EQ(error.code(), static_cast<DWORD>(ERROR_NOT_ENOUGH_MEMORY));
    }
}

struct Fate {
    bool destroyed = false, forced = false;
    std::uint32_t timeout = 0;
};

class Mourned : public Worker {
  public:
    explicit Mourned(Fate& fate) : Worker(&untilStopped), fate_(fate) {}
    ~Mourned() override { fate_.destroyed = ended(); }  // not before it was stopped

    bool stop(std::uint32_t timeoutMs, bool force) override {
        fate_ = {false, force, timeoutMs};
        return Worker::stop(timeoutMs, force);
    }

  private:
    Fate& fate_;
};

TEST(ThreadRefTest, OnlyTheLastOwnerStopsAndDestroys) {
    Fate fate;
    ThreadRef first(new Mourned(fate));
    first->start();
    {
        ThreadRef second(first);
        ThreadRef third;
        third = second;
        second.release();
        EXPECT_FALSE(second);
    }
    ThreadRef moved(std::move(first));
    ThreadRef last = moved;
    moved.release(longEnoughMs);
    EXPECT_EQ(fate.timeout, 0u);
    EXPECT_FALSE(static_cast<Mourned*>(last.get())->ended());
    last.release(longEnoughMs);
    EXPECT_TRUE(fate.destroyed && fate.forced);
    EXPECT_EQ(fate.timeout, longEnoughMs);
}

TEST(ThreadRefTest, ReassigningOrLeavingTheScopeLetsGoOfAThreadWithFiveSecondsToEnd) {
    Fate first, second;
    {
        ThreadRef thread(new Mourned(first));
        thread = ThreadRef(new Mourned(second));
        EXPECT_TRUE(first.destroyed);
        EXPECT_FALSE(second.destroyed);
    }
    EXPECT_TRUE(second.destroyed && second.forced);
    EXPECT_EQ(second.timeout, 5000u);
}

}  // namespace
}  // namespace nox_pub::mswin
