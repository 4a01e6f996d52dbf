#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "runtime/error_box.h"
#include "runtime/event.h"

struct _SECURITY_ATTRIBUTES;

namespace nox_pub::mswin {

// A long-running worker with a stop event of its own. A fault in it is an exception that run() can
// catch, and whatever escapes run() is shown to the operator; neither ends the process.
// Its owner stops it before it destroys it; ThreadRef does both.
class Thread {
  public:
    // Creates the thread suspended, with a priority as SetThreadPriority takes it. `name` is also
    // the caption of the error box. `box` outlives the thread. Throws EventError or ThreadError.
    Thread(std::string name, int priority, _SECURITY_ATTRIBUTES* attributes = nullptr,
           ErrorBox& box = systemErrorBox());
    // A thread that is still there is ended by force: what it works on is going.
    virtual ~Thread();
    Thread(const Thread&) = delete;
    Thread& operator=(const Thread&) = delete;

    // True when the system accepted it.
    virtual bool setPriority(int priority);
    virtual int getPriority() const;

    // False when the thread could not be resumed.
    virtual bool start();

    // Asks the thread to end and waits up to the timeout. True when it has ended: by itself or, if
    // it had not yet and `force` is set, by termination with exit code -1, which lets go of
    // nothing that it held. One that has left run() by then is not touched but waited for, as it
    // ends without further ado. On the thread itself it only asks, and returns false.
    virtual bool stop(std::uint32_t timeoutMs, bool force);

  protected:
    // The thread's work. The result is the thread's exit code. It looks at stopRequested() often
    // enough to end within its owner's timeout.
    virtual int run() = 0;

  public:
    // Shows an error box with the text (UTF-8) until the operator closes it. Always -1.
    virtual int report(const std::string& text);

    const std::string& name() const { return name_; }
    std::uint32_t id() const { return id_; }
    // 259 until it has ended.
    std::uint32_t exitCode() const;

  protected:
    // True when the thread was asked to end, or is within the time: a sleep that can be cut short.
    // The stop event is all there is to it; a flag besides could only say something else.
    bool stopRequested(std::uint32_t withinMs = 0) const { return stopEvent_.wait(withinMs); }

  private:
    friend class ThreadRef;

    static unsigned int __stdcall entry(void* thread);
    int runAndReport();
    int reportGuarded(const std::string& text) noexcept;
    bool active() const;
    void resumeFully();
    bool endedWithin(std::uint32_t timeoutMs) const;
    void terminate();

    std::atomic<std::uint32_t> references_{0};  // kept by the owners
    std::string name_;
    void* handle_ = nullptr;
    unsigned int id_ = 0;
    Event stopEvent_;
    std::atomic<bool> leftRun_{false};
    ErrorBox& box_;
};

}  // namespace nox_pub::mswin
