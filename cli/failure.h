#pragma once

#include <stdexcept>
#include <string>

#include "cli/exit_code.h"

namespace korvane::cli {

// Ends a command, with what the operator is told.
class Failure : public std::runtime_error {
  public:
    Failure(ExitCode code, const std::string& sentence)
        : std::runtime_error(sentence), code_(code) {}
    ExitCode code() const { return code_; }

  private:
    ExitCode code_;
};

// Ends a command at a safe place after Ctrl-C.
struct Interrupted {};

}  // namespace korvane::cli
