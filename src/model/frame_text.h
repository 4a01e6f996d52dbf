#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace korvane {

// What stands for a frame's transmission parameters, by stored value.
inline constexpr std::array<std::string_view, 4> rsCodeRateNames = {"(240, 240)", "(240, 224)",
                                                                    "(240, 192)", "(240, 176)"};
inline constexpr std::array<std::string_view, 4> byteInterleaveNames = {"保留", "模式1", "模式2",
                                                                        "模式3"};
inline constexpr std::array<std::string_view, 2> ldpcRateNames = {"1/2", "3/4"};
inline constexpr std::array<std::string_view, 3> modulationNames = {"BPSK", "QPSK", "16QAM"};
inline constexpr std::array<std::string_view, 8> scramblingModeNames = {
    "模式0", "模式1", "模式2", "模式3", "模式4", "模式5", "模式6", "模式7"};

// The Chinese ones in English.
inline constexpr std::array<std::string_view, 4> byteInterleaveTerms = {"reserved", "mode 1",
                                                                        "mode 2", "mode 3"};
inline constexpr std::array<std::string_view, 8> scramblingModeTerms = {
    "mode 0", "mode 1", "mode 2", "mode 3", "mode 4", "mode 5", "mode 6", "mode 7"};

// The name of one value; empty for one that has none.
std::string_view rsCodeRateTable(std::uint8_t value);
std::string_view byteInterleaveTable(std::uint8_t value);
std::string_view ldpcRateTable(std::uint8_t value);
std::string_view modulationTable(std::uint8_t value);
std::string_view scramblingModeTable(std::uint8_t value);

}  // namespace korvane
