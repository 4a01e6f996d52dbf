#pragma once

#include <windows.h>

namespace korvane {

// Has the compiler's runtime, of which the library carries a copy, give back what it would keep for
// as long as the process runs. The library's last act but for its static objects: when `module` is
// freed. It may be loaded again.
void releaseCompilerRuntime(HINSTANCE module);

}  // namespace korvane
