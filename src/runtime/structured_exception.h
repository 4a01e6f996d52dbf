#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

namespace nox_pub::mswin {

static_assert(sizeof(EXCEPTION_RECORD) == 20 * 4);
static_assert(sizeof(CONTEXT) == 179 * 4);

// A fault of the processor or the system, thrown on the thread that it happened on. what() is the
// whole report.
class StructuredException : public std::logic_error {
  public:
    StructuredException(const std::string& report, const EXCEPTION_RECORD& record,
                        const CONTEXT& context)
        : std::logic_error(report), record_(record), context_(context) {}

    // What happened. The nested record is always null: it would point into a stack long gone.
    const EXCEPTION_RECORD& record() const noexcept { return record_; }
    // The registers at the moment of the fault.
    const CONTEXT& context() const noexcept { return context_; }

  private:
    EXCEPTION_RECORD record_;
    CONTEXT context_;
};

}  // namespace nox_pub::mswin
