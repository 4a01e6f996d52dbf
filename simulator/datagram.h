#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace korvane {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

// Who sent a datagram, or whom it is for.
struct Endpoint {
    std::uint32_t address = 0;  // IPv4, network byte order
    std::uint16_t port = 0;     // host byte order
    auto operator<=>(const Endpoint&) const = default;
};

struct OutgoingDatagram {
    Endpoint to;
    std::uint64_t sendAtMs = 0;  // on the clock of the `nowMs` that the device was given
    Bytes bytes;
};

}  // namespace korvane
