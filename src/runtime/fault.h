#pragma once

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>

namespace nox_pub::mswin {

// What there is to tell about a fault, copied at its moment: whoever reports it may do so when the
// stack that it happened on has been left and written over.
struct Fault {
    EXCEPTION_RECORD record;  // no nested record; parameters beyond the count are 0
    CONTEXT context;
    std::array<std::uint8_t, 16> code;    // from the faulting instruction on
    std::size_t codeBytes;                // how many of them could be read
    std::array<std::uint32_t, 60> stack;  // from the stack pointer on
    std::size_t stackWords;  // how many of them could be read; 0 after a stack overflow
};

// Needs less than 1,000 bytes of stack, and no heap.
void captureFault(const EXCEPTION_RECORD& record, const CONTEXT& context, Fault& out) noexcept;

// Copies `size` bytes, or as many of them as are readable. Never faults.
std::size_t readMemory(std::uintptr_t address, void* out, std::size_t size) noexcept;

}  // namespace nox_pub::mswin
