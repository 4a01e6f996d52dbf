#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korvane::text_form {

// Two digits a byte: "0c10".
std::string toHex(std::span<const std::uint8_t> bytes);
std::optional<std::vector<std::uint8_t>> fromHex(std::string_view digits);

}  // namespace korvane::text_form
