#pragma once

#include <memory>
#include <optional>
#include <string>

namespace korvane {

// The lines of standard input without waiting for them. A thread of its own reads; a blocking read
// cannot be ended, so that thread is left behind when the program ends.
class LineReader {
  public:
    LineReader();

    // The next line that has come whole; nothing while there is none.
    std::optional<std::string> next();

  private:
    struct Queue;
    std::shared_ptr<Queue> queue_;
};

}  // namespace korvane
