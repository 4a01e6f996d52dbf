#include <windows.h>

#include "ui/module.h"

// Only remembers where the resources are: under the loader's lock nothing may be started, and at
// the end of a process its threads are gone already.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) korvane::setModuleInstance(instance);
    return TRUE;
}
