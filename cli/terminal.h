#pragma once

#include <string>
#include <string_view>

namespace korvane::cli {

// The seam to whoever started the program. Texts are UTF-8.
class Terminal {
  public:
    virtual ~Terminal() = default;

    // The answer, as it is; what a pipe gets. Throws a Failure when nobody takes it.
    virtual void write(std::string_view text) = 0;
    // Likewise, in place of the one before where that can be seen.
    virtual void redraw(std::string_view text) = 0;
    // A line beside the answer: what happens, what went wrong.
    virtual void note(std::string_view line) = 0;
    // One that the next line replaces; only people see it.
    virtual void transient(std::string_view line) = 0;
    // Whether a question is answered with yes.
    virtual bool confirm(std::string_view question) = 0;
    // All of standard input.
    virtual std::string input() = 0;

    // Whether an end was asked for with Ctrl-C.
    virtual bool interrupted() const = 0;
};

}  // namespace korvane::cli
