#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace korvane {

// Centre frequencies count 10 Hz; the operator sees and enters whole MHz.
inline constexpr std::uint32_t unitsPerMegahertz = 100'000;

inline std::string megahertzText(std::uint32_t frequency) {
    return std::to_string(frequency / unitsPerMegahertz);
}

// What the operator calls a network's levels, from 1 on, and a channel's bandwidths, from 0 on.
inline constexpr std::array<std::string_view, 5> networkLevelNames = {"一级", "二级", "三级",
                                                                      "四级", "五级"};
inline constexpr std::array<std::string_view, 2> bandwidthNames = {"8M", "2M"};

// The place of a level among the names. One that was never set is the first.
constexpr std::uint8_t levelIndex(std::uint8_t level) {
    return static_cast<std::uint8_t>(level == 0 ? 0 : level - 1);
}

constexpr std::uint8_t levelAt(std::uint8_t index) {
    return static_cast<std::uint8_t>(index + 1);
}

// As a drop-down list of the names shows it: what has no name shows as the first.
inline std::string nameAt(std::span<const std::string_view> names, std::size_t index) {
    return std::string(names[index < names.size() ? index : 0]);
}

}  // namespace korvane
