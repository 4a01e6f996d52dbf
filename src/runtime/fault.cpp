#include "runtime/fault.h"

#include <algorithm>

namespace nox_pub::mswin {
namespace {

// Asked first, because not every system's ReadProcessMemory minds a page's protection, and reading
// a guard page would use it up.
bool readable(const void* address) {
    MEMORY_BASIC_INFORMATION page;
    if (VirtualQuery(address, &page, sizeof page) == 0) return false;
    return page.State == MEM_COMMIT && (page.Protect & (PAGE_NOACCESS | PAGE_GUARD)) == 0;
}

}  // namespace

std::size_t readMemory(std::uintptr_t address, void* out, std::size_t size) noexcept {
    constexpr std::size_t pageSize = 4096;
    std::size_t done = 0;
    while (done < size) {
        const std::uintptr_t from = address + done;
        const std::size_t part = std::min(size - done, pageSize - from % pageSize);
        const auto* source = reinterpret_cast<const void*>(from);
        SIZE_T copied = 0;
        // The system's copy, because another thread may give the page back at any moment.
        if (!readable(source) ||
            !ReadProcessMemory(GetCurrentProcess(), source, static_cast<std::uint8_t*>(out) + done,
                               part, &copied) ||
            copied != part)
            break;
        done += part;
    }
    return done;
}

void captureFault(const EXCEPTION_RECORD& record, const CONTEXT& context, Fault& out) noexcept {
    out.record = record;
    out.record.ExceptionRecord = nullptr;
    auto& parameters = out.record.ExceptionInformation;
    const DWORD used = std::min<DWORD>(record.NumberParameters, EXCEPTION_MAXIMUM_PARAMETERS);
    std::fill(parameters + used, parameters + EXCEPTION_MAXIMUM_PARAMETERS, 0);
    out.context = context;
    out.codeBytes = readMemory(context.Eip, out.code.data(), out.code.size());
    out.stackWords = 0;
    if (record.ExceptionCode == EXCEPTION_STACK_OVERFLOW) return;
    out.stackWords = readMemory(context.Esp, out.stack.data(), sizeof out.stack) / 4;
}

}  // namespace nox_pub::mswin
