#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/context.h"
#include "cli/exit_code.h"

namespace korvane::cli {

// Does what the arguments, without the program's name, ask for. Tells the terminal whatever comes
// of it; throws nothing but for lack of memory.
ExitCode run(std::vector<std::string> arguments, Context& context);

}  // namespace korvane::cli
