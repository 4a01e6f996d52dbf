#pragma once

#include <cstdint>

#include "runtime/thread.h"

namespace nox_pub::mswin {

// One of the owners of a thread made with new. The last one to let go stops and destroys it.
class ThreadRef {
  public:
    // How long a thread may take to end when its last owner is destroyed.
    static constexpr std::uint32_t defaultTimeoutMs = 5000;

    ThreadRef() = default;
    explicit ThreadRef(Thread* thread);
    ThreadRef(const ThreadRef& other) : ThreadRef(other.thread_) {}
    ThreadRef(ThreadRef&& other) noexcept;
    ThreadRef& operator=(ThreadRef other) noexcept;
    ~ThreadRef();

    // Lets go. The last owner asks the thread to end, ends it by force after the timeout, and
    // destroys it. Let go of on the thread itself, it is only asked, and never destroyed. What an
    // overridden stop() throws passes; the object is left alone then, as its thread may still run.
    void release(std::uint32_t timeoutMs = defaultTimeoutMs);

    Thread* get() const { return thread_; }
    Thread* operator->() const { return thread_; }
    explicit operator bool() const { return thread_ != nullptr; }

  private:
    Thread* thread_ = nullptr;
};

}  // namespace nox_pub::mswin
