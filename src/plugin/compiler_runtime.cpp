#include "plugin/compiler_runtime.h"

#include <pthread.h>

#include <bitset>
#include <cstddef>

// The runtime keeps memory aside for exceptions, and gives it back when it is told to.
namespace __gnu_cxx {
void __freeres();
}

// The runtime takes one lock of this kind, around its list of what threads have of their own, and
// forgets it. It is remembered here on its way there (see the linker's option --wrap).
extern "C" {
int __real_pthread_rwlock_wrlock(pthread_rwlock_t* lock);
int __wrap_pthread_rwlock_wrlock(pthread_rwlock_t* lock);
}

namespace {

pthread_rwlock_t* runtimeLock = nullptr;

constexpr DWORD slotCount = 64 + 1024;  // of a thread, all that the system has

std::bitset<slotCount> slotsInUse() {
    std::bitset<slotCount> used;
    for (DWORD slot = 0; slot < slotCount; ++slot) used[slot] = TlsGetValue(slot) != nullptr;
    return used;
}

void tellThreadEnd(HINSTANCE module) {
    const auto* image = reinterpret_cast<const std::byte*>(module);
    const auto& dos = *reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos.e_lfanew);
    const auto& entry = headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_TLS];
    if (entry.Size == 0) return;
    const auto& threads =
        *reinterpret_cast<const IMAGE_TLS_DIRECTORY*>(image + entry.VirtualAddress);
    auto* callback = reinterpret_cast<const PIMAGE_TLS_CALLBACK*>(threads.AddressOfCallBacks);
    for (; *callback; ++callback) (*callback)(module, DLL_THREAD_DETACH, nullptr);
}

// What the runtime keeps for each thread that it has met, a handle of it among others, it gives
// back when that thread ends. The one that frees the library goes on, and is told to have gone. The
// slot that this empties was the runtime's, which never gives it back; the system has few.
void forgetThisThread(HINSTANCE module) {
    const auto before = slotsInUse();
    tellThreadEnd(module);
    const auto emptied = before & ~slotsInUse();
    for (DWORD slot = 0; slot < slotCount; ++slot)
        if (emptied[slot]) TlsFree(slot);
}

}  // namespace

int __wrap_pthread_rwlock_wrlock(pthread_rwlock_t* lock) {
    runtimeLock = lock;
    return __real_pthread_rwlock_wrlock(lock);
}

namespace korvane {

void releaseCompilerRuntime(HINSTANCE module) {
    if (runtimeLock) pthread_rwlock_destroy(runtimeLock);
    forgetThisThread(module);
    __gnu_cxx::__freeres();
}

}  // namespace korvane
