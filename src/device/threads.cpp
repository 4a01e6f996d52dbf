#include "device/threads.h"

#include <thread>

namespace korvane {
namespace {

class PlainThread : public RunningThread {
  public:
    explicit PlainThread(std::function<void()> work) : thread_(std::move(work)) {}
    bool endByForce() override { return false; }

  private:
    std::jthread thread_;
};

class PlainThreads : public Threads {
  public:
    std::unique_ptr<RunningThread> start(const char*, std::function<void()> work) override {
        return std::make_unique<PlainThread>(std::move(work));
    }
    void guarded(const std::function<void()>& work) override { work(); }
};

}  // namespace

Threads& plainThreads() {
    static PlainThreads threads;
    return threads;
}

}  // namespace korvane
