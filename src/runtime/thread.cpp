#include "runtime/thread.h"

#include <windows.h>

#include <process.h>

#include <utility>

#include "runtime/exceptions.h"
#include "runtime/fault_guard.h"
#include "runtime/fault_report.h"
#include "runtime/structured_exception.h"

namespace nox_pub::mswin {

Thread::Thread(std::string name, int priority, _SECURITY_ATTRIBUTES* attributes, ErrorBox& box)
    : name_(std::move(name)), box_(box) {
    // What is committed at first; the stack grows up to the size that the program's header says.
    constexpr unsigned stackBytes = 8192;
    const auto thread =
        _beginthreadex(attributes, stackBytes, &Thread::entry, this, CREATE_SUSPENDED, &id_);
    if (thread == 0) throw ThreadError("creating thread " + name_, _doserrno);
    handle_ = reinterpret_cast<void*>(thread);
    SetThreadPriority(handle_, priority);
}

Thread::~Thread() {
    if (active()) terminate();
    CloseHandle(handle_);
}

bool Thread::setPriority(int priority) {
    return SetThreadPriority(handle_, priority) != FALSE;
}

int Thread::getPriority() const {
    return GetThreadPriority(handle_);
}

bool Thread::start() {
    return ResumeThread(handle_) != static_cast<DWORD>(-1);
}

bool Thread::stop(std::uint32_t timeoutMs, bool force) {
    resumeFully();
    stopEvent_.signal();
    if (GetCurrentThreadId() == id_) return false;
    if (endedWithin(timeoutMs)) return true;
    if (!force) return false;
    // While the system takes a thread down it holds locks that every thread needs; ended there by
    // force, it would take the whole process with it.
    constexpr std::uint32_t leavingMs = 5000;
    if (leftRun_ && endedWithin(leavingMs)) return true;
    terminate();
    return true;
}

int Thread::report(const std::string& text) {
    box_.show(text, name_);
    return -1;
}

std::uint32_t Thread::exitCode() const {
    DWORD code = 0;
    GetExitCodeThread(handle_, &code);
    return code;
}

bool Thread::active() const {
    return exitCode() == STILL_ACTIVE;
}

// A suspended thread would never see that it is asked to end.
void Thread::resumeFully() {
    while (active()) {
        const DWORD suspendCount = ResumeThread(handle_);
        if (suspendCount == 0 || suspendCount == static_cast<DWORD>(-1)) return;
    }
}

bool Thread::endedWithin(std::uint32_t timeoutMs) const {
    return WaitForSingleObject(handle_, timeoutMs) == WAIT_OBJECT_0;
}

// The system ends it at its leisure; whoever asked may go on to destroy what it worked on.
void Thread::terminate() {
    constexpr std::uint32_t patienceMs = 1000;
    TerminateThread(handle_, static_cast<DWORD>(-1));
    endedWithin(patienceMs);
}

// The system's threads begin with a stack that is not aligned as the compiler expects it.
__attribute__((force_align_arg_pointer)) unsigned __stdcall Thread::entry(void* thread) {
    auto& self = *static_cast<Thread*>(thread);
    const int result = self.runAndReport();
    self.leftRun_ = true;
    return static_cast<unsigned>(result);
}

int Thread::runAndReport() {
    const TranslatorScope translator(&throwStructuredException);
    int result = -1;
    try {
        guarded([&] { result = run(); });
    } catch (const StructuredException& fault) {
        result = reportGuarded(fault.what());
    } catch (const std::exception& exception) {
        result = reportGuarded(exception.what());
    } catch (...) {
        result = reportGuarded("<unknown exception>");
    }
    return result;
}

int Thread::reportGuarded(const std::string& text) noexcept {
    int result = -1;
    try {
        guarded([&] { result = report(text); });
    } catch (...) {
        // There is nobody left to tell.
    }
    return result;
}

}  // namespace nox_pub::mswin
