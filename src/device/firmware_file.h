#pragma once

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>

namespace korvane {

// The firmware of the device: its programmable logic, its encoder and its operating system. It
// takes files of these names only.
inline constexpr std::array<std::string_view, 3> firmwareNames = {"CMMB_FPGA.rbf", "softH264EP.out",
                                                                  "vxWorks"};

// To the character, upper and lower case too.
inline bool isFirmwareName(std::string_view name) {
    return std::ranges::find(firmwareNames, name) != firmwareNames.end();
}

// A file's name without its folder, UTF-8.
inline std::string fileNameOf(const std::filesystem::path& path) {
    const std::u8string name = path.filename().u8string();
    return {name.begin(), name.end()};
}

}  // namespace korvane
