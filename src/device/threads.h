#pragma once

#include <functional>
#include <memory>

namespace korvane {

// A thread of the panel's own, from its start on. Destroying it waits for its end.
class RunningThread {
  public:
    virtual ~RunningThread() = default;

    // Ends it wherever it is; what it held stays held. False when the system has no way to.
    virtual bool endByForce() = 0;
};

// The seam to the system's threads.
class Threads {
  public:
    virtual ~Threads() = default;

    // Runs `work`, which throws nothing, on a thread called `name`. Throws a std::exception when
    // there is none to be had.
    virtual std::unique_ptr<RunningThread> start(const char* name, std::function<void()> work) = 0;

    // Calls `work` in such a way that a fault of the processor in it comes out as an exception, if
    // the system can do that, whose text is the whole report. Then destructors of what was called
    // may not have run.
    virtual void guarded(const std::function<void()>& work) = 0;
};

// The language's own threads, which know neither force nor faults.
Threads& plainThreads();

}  // namespace korvane
