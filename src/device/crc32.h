#pragma once

#include <cstdint>

namespace korvane {

// CRC-32/MPEG-2 (ISO/IEC 13818-1 annex A): polynomial 0x04C11DB7, most significant bit first,
// start value 0xFFFFFFFF, no final XOR. A length below 1 gives the start value.
std::uint32_t Crc32(const void* data, int length);

}  // namespace korvane
