#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace korvane {

// A lock that its owner may take again, and that can be taken from a thread which will never give
// it back. Whoever waits for it looks every now and then: a thread may be ended by force while it
// waits, and no wait of the language's library survives that.
class ExchangeLock {
  public:
    using Owner = std::thread::id;

    void lock() {
        using namespace std::chrono_literals;
        while (!tryLock()) std::this_thread::sleep_for(2ms);
    }

    void unlock() {
        if (ownedBy(self()) && --depth_ == 0) owner_ = Owner();
    }

    // Gives back all that the calling thread holds.
    void unlockFully() { takeFrom(self()); }

    bool ownedBy(Owner thread) const { return owner_ == thread; }

    // Ends the hold of a thread that has ended, if it has one.
    void takeFrom(Owner thread) {
        if (!ownedBy(thread)) return;
        depth_ = 0;
        owner_ = Owner();
    }

  private:
    static Owner self() { return std::this_thread::get_id(); }

    bool tryLock() {
        Owner nobody;
        if (!ownedBy(self()) && !owner_.compare_exchange_strong(nobody, self())) return false;
        ++depth_;
        return true;
    }

    std::atomic<Owner> owner_;
    std::atomic<int> depth_{0};
};

}  // namespace korvane
