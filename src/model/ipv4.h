#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace korvane {

using Ipv4 = std::array<std::uint8_t, 4>;  // first octet first

// "225.1.2.3".
std::string addressText(const Ipv4& address);

// What such a text says; nothing when it is not four decimal numbers up to 255, of at most three
// digits each, with a point between.
std::optional<Ipv4> parseAddress(std::string_view text);

}  // namespace korvane
