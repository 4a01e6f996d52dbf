#pragma once

namespace nox_pub::mswin {

// A lock for what threads share that may be ended by force: the system passes it on from a thread
// that died with it, where a critical section would stay locked for ever. Works with
// std::lock_guard. The one who gets it next may find the work of the dead thread half done.
class SystemMutex {
  public:
    SystemMutex();
    ~SystemMutex();
    SystemMutex(const SystemMutex&) = delete;
    SystemMutex& operator=(const SystemMutex&) = delete;

    void lock();
    void unlock();

  private:
    void* handle_;
};

}  // namespace nox_pub::mswin
