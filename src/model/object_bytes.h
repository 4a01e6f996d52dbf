#pragma once

#include <cstdint>
#include <span>
#include <type_traits>

namespace korvane {

// The bytes of a fixed layout, as they stand in memory.
template <class T>
std::span<const std::uint8_t> bytesOf(const T& object) {
    static_assert(std::is_trivially_copyable_v<T>);
    return {reinterpret_cast<const std::uint8_t*>(&object), sizeof object};
}

template <class T>
std::span<std::uint8_t> writableBytesOf(T& object) {
    static_assert(std::is_trivially_copyable_v<T>);
    return {reinterpret_cast<std::uint8_t*>(&object), sizeof object};
}

}  // namespace korvane
