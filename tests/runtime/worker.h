#pragma once

#include <functional>
#include <utility>

#include "runtime/thread.h"

namespace nox_pub::mswin::test {

constexpr std::uint32_t longEnoughMs = 60000;

// A thread whose work a test supplies.
class Worker : public Thread {
  public:
    using Work = std::function<int(Worker&)>;

    Worker(Work work, ErrorBox& box = systemErrorBox(), int priority = 0)
        : Thread("工作线程", priority, nullptr, box), work_(std::move(work)) {}

    using Thread::stopRequested;
    bool ended() const { return exitCode() != 259; }

  protected:
    int run() override { return work_(*this); }

  private:
    Work work_;
};

// Works until it is asked to stop.
inline int untilStopped(Worker& worker) {
    return worker.stopRequested(longEnoughMs) ? 0 : 1;
}

}  // namespace nox_pub::mswin::test
