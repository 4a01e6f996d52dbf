#include <windows.h>

#include <cstddef>

#include "plugin/library_freed.h"
#include "ui/module.h"

// The compiler's runtime keeps memory aside for exceptions, and gives it back when it is told to.
namespace __gnu_cxx {
void __freeres();
}

namespace {

// What the compiler's runtime keeps for each thread that it has met, a handle of it among others,
// it gives back when that thread ends. The one that frees the library goes on, and is told to have
// gone.
void forgetThisThread(HINSTANCE instance) {
    const auto* image = reinterpret_cast<const std::byte*>(instance);
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos.e_lfanew);
    const auto& entry = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_TLS];
    if (entry.Size == 0) return;
    const auto& threads =
        *reinterpret_cast<const IMAGE_TLS_DIRECTORY*>(image + entry.VirtualAddress);
    auto* callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(threads.AddressOfCallBacks);
    for (; *callback; ++callback) (*callback)(instance, DLL_THREAD_DETACH, nullptr);
}

}  // namespace

// Under the loader's lock nothing may be started: only where the resources are is remembered. At
// the end of a process its threads have been ended by force, with whatever they held, and nothing
// must be touched; then, and only then, `ending` is no null.
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID ending) {
    if (reason == DLL_PROCESS_ATTACH) korvane::setModuleInstance(instance);
    if (reason == DLL_PROCESS_DETACH && !ending) {
        korvane::libraryFreed();
        forgetThisThread(instance);
        __gnu_cxx::__freeres();
    }
    return TRUE;
}
