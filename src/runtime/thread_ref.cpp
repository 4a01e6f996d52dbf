#include "runtime/thread_ref.h"

#include <utility>

namespace nox_pub::mswin {

ThreadRef::ThreadRef(Thread* thread) : thread_(thread) {
    if (thread_) ++thread_->references_;
}

ThreadRef::ThreadRef(ThreadRef&& other) noexcept : thread_(std::exchange(other.thread_, nullptr)) {}

ThreadRef& ThreadRef::operator=(ThreadRef other) noexcept {
    std::swap(thread_, other.thread_);
    return *this;
}

ThreadRef::~ThreadRef() {
    try {
        release();
    } catch (...) {
        // See release().
    }
}

void ThreadRef::release(std::uint32_t timeoutMs) {
    Thread* const thread = std::exchange(thread_, nullptr);
    if (!thread || --thread->references_ > 0) return;
    if (thread->stop(timeoutMs, true)) delete thread;
}

}  // namespace nox_pub::mswin
