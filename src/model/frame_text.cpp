#include "model/frame_text.h"

#include <span>

namespace korvane {
namespace {

std::string_view nameOf(std::uint8_t value, std::span<const std::string_view> names) {
    return value < names.size() ? names[value] : std::string_view();
}

}  // namespace

std::string_view rsCodeRateTable(std::uint8_t value) {
    return nameOf(value, rsCodeRateNames);
}
std::string_view byteInterleaveTable(std::uint8_t value) {
    return nameOf(value, byteInterleaveNames);
}
std::string_view ldpcRateTable(std::uint8_t value) {
    return nameOf(value, ldpcRateNames);
}
std::string_view modulationTable(std::uint8_t value) {
    return nameOf(value, modulationNames);
}
std::string_view scramblingModeTable(std::uint8_t value) {
    return nameOf(value, scramblingModeNames);
}

}  // namespace korvane
