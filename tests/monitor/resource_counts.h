#pragma once

#include "runtime/system_facts.h"

namespace korvane::test {

struct ResourceCounts {
    int gdi;
    int handles;        // of the process
    int freeUserIndex;  // in the system's table of user objects, the place a new one would take
};

// Wine does not count for GetGuiResources: there the process's own table of GDI objects is counted.
// Its place is that of Windows, the 24 bytes of an entry are Wine's.
inline int gdiObjects() {
    if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS))
        return static_cast<int>(count);
    constexpr std::size_t tableInBlock = 0x94, entries = 0x4000, entrySize = 24, typeInEntry = 14;
    const std::uint8_t* block = nullptr;
    asm("movl %%fs:0x30, %0" : "=r"(block));
    const auto* table = *reinterpret_cast<const std::uint8_t* const*>(block + tableInBlock);
    int count = 0;
    for (std::size_t i = 0; i < entries; ++i) count += table[i * entrySize + typeInEntry] != 0;
    return count;
}

inline int freeUserIndex() {
    const HMENU probe = CreatePopupMenu();
    const int index = LOWORD(reinterpret_cast<ULONG_PTR>(probe));
    DestroyMenu(probe);
    return index;
}

inline ResourceCounts countResources() {
    return {gdiObjects(), nox_pub::mswin::test::openHandles(), freeUserIndex()};
}

}  // namespace korvane::test
