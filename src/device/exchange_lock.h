#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>

namespace korvane {

// A lock that its owner may take again, and that can be taken from an owner which will never give
// it back: a thread that was ended by force. Waiting and owning leave the mutex inside free, so
// such an end does not catch it held.
class ExchangeLock {
  public:
    void lock() {
        std::unique_lock inside(mutex_);
        const std::thread::id self = std::this_thread::get_id();
        freed_.wait(inside, [this, self] { return depth_ == 0 || owner_ == self; });
        owner_ = self;
        ++depth_;
    }

    void unlock() {
        const std::lock_guard inside(mutex_);
        if (owner_ == std::this_thread::get_id() && depth_ > 0 && --depth_ == 0)
            freed_.notify_one();
    }

    // From now on nobody owns it.
    void forgetOwner() {
        const std::lock_guard inside(mutex_);
        depth_ = 0;
        freed_.notify_all();
    }

  private:
    std::mutex mutex_;
    std::condition_variable freed_;
    std::thread::id owner_;
    int depth_ = 0;
};

}  // namespace korvane
