#include "text_form/hexadecimal.h"

#include <charconv>

namespace korvane::text_form {

std::string toHex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

std::optional<std::vector<std::uint8_t>> fromHex(std::string_view digits) {
    if (digits.size() % 2 != 0) return std::nullopt;
    std::vector<std::uint8_t> bytes(digits.size() / 2);
    const char* place = digits.data();
    for (std::uint8_t& byte : bytes) {
        if (std::from_chars(place, place + 2, byte, 16).ptr != place + 2) return std::nullopt;
        place += 2;
    }
    return bytes;
}

}  // namespace korvane::text_form
