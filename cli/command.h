#pragma once

#include "cli/arguments.h"

namespace korvane::cli {

// One command of the program. `describe` says its arguments and what it does.
struct Command {
    const char* name;
    const char* help;
    void (*describe)(Arguments arguments);
};

void describeFetch(Arguments arguments);
void describeSend(Arguments arguments);
void describeDiff(Arguments arguments);
void describeCheck(Arguments arguments);
void describeShow(Arguments arguments);
void describeConvert(Arguments arguments);
void describeStatus(Arguments arguments);
void describeParams(Arguments arguments);
void describeReboot(Arguments arguments);
void describeRestore(Arguments arguments);
void describeUpgrade(Arguments arguments);

}  // namespace korvane::cli
