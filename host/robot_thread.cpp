#include <cstdio>

#include "robot.h"

namespace korvane::host {

namespace {

constexpr UINT scriptFailed = 3;

void runScript(const std::function<void(Robot&)>& script, DWORD guiThread) noexcept {
    try {
        Robot robot(guiThread);
        script(robot);
        return;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "robot: %s\n", error.what());
    } catch (...) {
        std::fprintf(stderr, "robot: the script threw something unknown\n");
    }
    std::fflush(nullptr);
    // No orderly exit: the windows' thread may sit in a modal loop with locks held.
    TerminateProcess(GetCurrentProcess(), scriptFailed);
}

}  // namespace

RobotThread::RobotThread(std::function<void(Robot&)> script)
    : thread_([script = std::move(script), guiThread = GetCurrentThreadId()] {
          runScript(script, guiThread);
      }) {}

RobotThread::~RobotThread() {
    finish();
}

void RobotThread::finish() {
    if (!thread_.joinable()) return;
    HANDLE ended = reinterpret_cast<HANDLE>(pthread_gethandle(thread_.native_handle()));
    while (MsgWaitForMultipleObjects(1, &ended, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    thread_.join();
}

}  // namespace korvane::host
