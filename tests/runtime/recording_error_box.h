#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "runtime/error_box.h"

namespace nox_pub::mswin::test {

// Keeps (caption, text) of each box instead of showing it.
class RecordingErrorBox : public ErrorBox {
  public:
    using Shown = std::vector<std::pair<std::string, std::string>>;

    void show(std::string_view text, std::string_view caption) override {
        const std::lock_guard guard(lock_);
        shown_.emplace_back(caption, text);
    }
    Shown shown() const {
        const std::lock_guard guard(lock_);
        return shown_;
    }

  private:
    mutable std::mutex lock_;
    Shown shown_;
};

}  // namespace nox_pub::mswin::test
