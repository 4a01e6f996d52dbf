#include "device/crc32.h"

#include <array>

namespace korvane {
namespace {

constexpr std::array<std::uint32_t, 256> makeTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t value = byte << 24;
        for (int bit = 0; bit < 8; ++bit)
            value = (value & 0x80000000u) != 0 ? value << 1 ^ 0x04C11DB7u : value << 1;
        table[byte] = value;
    }
    return table;
}

constexpr std::array<std::uint32_t, 256> table = makeTable();

}  // namespace

std::uint32_t Crc32(const void* data, int length) {
    std::uint32_t crc = 0xFFFFFFFFu;
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    for (int i = 0; i < length; ++i) crc = crc << 8 ^ table[crc >> 24 ^ bytes[i]];
    return crc;
}

}  // namespace korvane
