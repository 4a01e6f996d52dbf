#include <windows.h>

#include <cstddef>
#include <cstring>

// The library carries its own copy of the compiler's runtime. When the host has the shared copy
// loaded, the start-up code hands our unwind tables to that one, our own unwinder never sees them,
// and the first exception would end the process. So the tables are registered here if our unwinder
// does not know them: before any other constructor, and taken back after all destructors.

extern "C" {
extern const IMAGE_DOS_HEADER __ImageBase;
const void* _Unwind_Find_FDE(void* address, void* bases);
void __register_frame_info(const void* begin, void* object);
void* __deregister_frame_info(const void* begin);
}

namespace {

// The unwinder's note about one table, of a size that only it knows (24 bytes today).
alignas(void*) char tableNote[64];
const void* registered = nullptr;

// The section's name is cut to the eight characters that a section header has room for.
const void* findUnwindTable() {
    const auto* image = reinterpret_cast<const std::byte*>(&__ImageBase);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + __ImageBase.e_lfanew);
    const IMAGE_SECTION_HEADER* section = IMAGE_FIRST_SECTION(headers);
    for (WORD i = 0; i < headers->FileHeader.NumberOfSections; ++i, ++section)
        if (std::memcmp(section->Name, ".eh_fram", sizeof section->Name) == 0)
            return image + section->VirtualAddress;
    return nullptr;
}

__attribute__((constructor(101))) void registerUnwindTable() {
    void* bases[3];
    if (_Unwind_Find_FDE(reinterpret_cast<void*>(&findUnwindTable), bases)) return;
    registered = findUnwindTable();
    if (registered) __register_frame_info(registered, tableNote);
}

__attribute__((destructor(101))) void deregisterUnwindTable() {
    if (registered) __deregister_frame_info(registered);
}

}  // namespace
