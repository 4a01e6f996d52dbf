#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace nox_pub::mswin {

// A call of the operating system failed.
class OSError : public std::runtime_error {
  public:
    OSError(const std::string& text, std::uint32_t code) : std::runtime_error(text), code_(code) {}

    // The system's own error code.
    std::uint32_t code() const noexcept { return code_; }

  private:
    std::uint32_t code_;
};

class ThreadError : public OSError {
  public:
    using OSError::OSError;
};

class EventError : public OSError {
  public:
    using OSError::OSError;
};

}  // namespace nox_pub::mswin
