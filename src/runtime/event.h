#pragma once

#include <cstdint>
#include <string>

namespace nox_pub::mswin {

// A manual-reset event of the system, at first not signalled.
class Event {
  public:
    // With a name it is shared, as "nox_pub:event:" and the name, by all who create it under
    // this logon; with none it is this object's own. Throws EventError.
    explicit Event(const std::string& name = {});
    ~Event();
    Event(const Event&) = delete;
    Event& operator=(const Event&) = delete;

    // Somebody else had created the named event before.
    bool existed() const { return existed_; }

    void signal();
    void reset();
    // True when it is signalled, or becomes so within the time. 0 only looks, 0xFFFFFFFF waits for
    // ever.
    bool wait(std::uint32_t timeoutMs) const;

  private:
    void* handle_;
    bool existed_ = false;
};

}  // namespace nox_pub::mswin
