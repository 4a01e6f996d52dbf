#include "device/runtime_threads.h"

#include <stdexcept>

#include "log/log.h"
#include "runtime/fault_guard.h"
#include "runtime/thread.h"
#include "runtime/thread_ref.h"

namespace korvane {
namespace {

using namespace nox_pub::mswin;

class WorkThread : public Thread {
  public:
    WorkThread(const char* name, std::function<void()> work)
        : Thread(name, normalPriority), work_(std::move(work)) {}

    // A box would wait for an operator who need not be there.
    int report(const std::string& text) override {
        logLine(logError, "线程 %s 异常结束: %s", name().c_str(), text.c_str());
        return -1;
    }

  protected:
    int run() override {
        work_();
        return 0;
    }

  private:
    static constexpr int normalPriority = 0;
    std::function<void()> work_;
};

class RuntimeThread : public RunningThread {
  public:
    RuntimeThread(const char* name, std::function<void()> work)
        : thread_(new WorkThread(name, std::move(work))) {
        if (!thread_->start()) throw std::runtime_error("a thread was not started");
    }
    ~RuntimeThread() override {
        constexpr std::uint32_t forEver = 0xFFFFFFFF;
        thread_->stop(forEver, false);
    }
    bool endByForce() override { return thread_->stop(0, true); }

  private:
    ThreadRef thread_;
};

class RuntimeThreads : public Threads {
  public:
    std::unique_ptr<RunningThread> start(const char* name, std::function<void()> work) override {
        return std::make_unique<RuntimeThread>(name, std::move(work));
    }
    void guarded(const std::function<void()>& work) override {
        nox_pub::mswin::guarded([&work] { work(); });
    }
};

}  // namespace

Threads& runtimeThreads() {
    static RuntimeThreads threads;
    return threads;
}

}  // namespace korvane
