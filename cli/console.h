#pragma once

#include "cli/terminal.h"

namespace korvane::cli {

// The streams that the program was started with.
class Console : public Terminal {
  public:
    void write(std::string_view text) override;
    void redraw(std::string_view text) override;
    void note(std::string_view line) override;
    void transient(std::string_view line) override;
    bool confirm(std::string_view question) override;
    std::string input() override;
    bool interrupted() const override;

    // Takes a line that still waits to be replaced off the screen.
    ~Console() override { clearTransient(); }
    Console() = default;
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

  private:
    void clearTransient();

    bool transientShown_ = false;
};

}  // namespace korvane::cli
