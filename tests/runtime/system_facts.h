#pragma once

#include <windows.h>

#include <cstdint>
#include <vector>

namespace nox_pub::mswin::test {

// Handles that this process has open; -1 when the system does not say. Asks for the table of all
// handles, because not every system counts those of one process.
inline int openHandles() {
    struct Entry {
        ULONG process, rest[3];  // which handle, of what object, with what access
    };
    using Query = LONG(WINAPI*)(ULONG, void*, ULONG, ULONG*);
    constexpr ULONG systemHandleInformation = 16;
    const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
    std::vector<std::uint8_t> table(1 << 22);
    const auto size = static_cast<ULONG>(table.size());
    if (query(systemHandleInformation, table.data(), size, nullptr) != 0) return -1;
    const ULONG count = *reinterpret_cast<const ULONG*>(table.data());
    const auto* entries = reinterpret_cast<const Entry*>(table.data() + sizeof(ULONG));
    int own = 0;
    for (ULONG i = 0; i < count; ++i) own += entries[i].process == GetCurrentProcessId();
    return own;
}

// While it lives there is no room for a thread's stack, but still some for the heap.
class ExhaustedAddressSpace {
  public:
    ExhaustedAddressSpace() {
        blocks_.reserve(1 << 16);
        for (SIZE_T size = SIZE_T{1} << 28; size >= SIZE_T{1} << 18; size /= 2)
            while (void* block = VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_NOACCESS))
                blocks_.push_back(block);
    }
    ~ExhaustedAddressSpace() {
        for (void* block : blocks_) VirtualFree(block, 0, MEM_RELEASE);
    }
    ExhaustedAddressSpace(const ExhaustedAddressSpace&) = delete;
    ExhaustedAddressSpace& operator=(const ExhaustedAddressSpace&) = delete;

  private:
    std::vector<void*> blocks_;
};

}  // namespace nox_pub::mswin::test
