#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace korvane {

// A count that the device reports, held to what its array can hold.
template <class T, std::size_t N>
std::size_t heldCount(std::uint8_t count, const std::array<T, N>&) {
    return std::min<std::size_t>(count, N);
}

}  // namespace korvane
