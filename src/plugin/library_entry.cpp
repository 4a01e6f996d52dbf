#include <windows.h>

#include "plugin/compiler_runtime.h"
#include "plugin/library_freed.h"
#include "ui/module.h"

// Under the loader's lock nothing may be started: only where the resources are is remembered. At
// the end of a process its threads have been ended by force, with whatever they held, and nothing
// must be touched; then, and only then, `ending` is no null.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID ending) {
    if (reason == DLL_PROCESS_ATTACH) korvane::setModuleInstance(instance);
    if (reason == DLL_PROCESS_DETACH && !ending) {
        korvane::libraryFreed();
        korvane::releaseCompilerRuntime(instance);
    }
    return TRUE;
}
