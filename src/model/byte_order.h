#pragma once

#include <bit>
#include <cstdint>

namespace korvane {

// The panel's machines are little-endian, and so are its files; the wire is big-endian.
static_assert(std::endian::native == std::endian::little);

inline void turn(std::uint16_t& value) {
    value = __builtin_bswap16(value);
}
inline void turn(std::uint32_t& value) {
    value = __builtin_bswap32(value);
}

}  // namespace korvane
