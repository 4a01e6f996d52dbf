#pragma once

#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>

namespace korvane::test {

// "01 AB" for `count` bytes of `object` from `offset` on: what a packet analyser would show.
template <class T>
std::string bytesAt(const T& object, std::size_t offset, std::size_t count) {
    const auto* bytes = reinterpret_cast<const std::uint8_t*>(&object) + offset;
    std::string text;
    for (std::size_t i = 0; i < count; ++i) {
        char digits[4];
        std::snprintf(digits, sizeof digits, i == 0 ? "%02X" : " %02X", bytes[i]);
        text += digits;
    }
    return text;
}

template <class T>
std::string wholeBytes(const T& object) {
    return bytesAt(object, 0, sizeof object);
}

// A test's name as the framework takes it, from what a case is called.
inline std::string testName(std::string text) {
    for (char& c : text)
        if (!std::isalnum(static_cast<unsigned char>(c))) c = '_';
    return text;
}

}  // namespace korvane::test
