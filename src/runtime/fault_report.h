#pragma once

#include <string>

#include "runtime/fault.h"

namespace nox_pub::mswin {

// A readable text (UTF-8, lines ended by CR LF, about 800 characters): what happened, the
// registers, the code and, but for a stack overflow, the top of the stack.
std::string faultReport(const Fault& fault);

// The translator for threads that take faults as exceptions: throws a StructuredException.
[[noreturn]] void throwStructuredException(const Fault& fault);

}  // namespace nox_pub::mswin
