#pragma once

#include <cstdint>
#include <string>

namespace korvane {

struct PingReply {
    std::uint32_t address;  // who answered, network byte order
    std::uint32_t roundTripMs;
};

// A dotted address as it is, or the first address of a name, which can take the system long.
// Network byte order; 0xFFFFFFFF when there is none.
std::uint32_t resolveHost(const std::string& host);

// Sends one ICMP echo request of `dataSize` letters 'E' (the low 8 bits of it) and waits for the
// answer. `host` is a dotted address or a name. True, with `reply` filled, only for one answer that
// echoes all data with status 0; otherwise false, with the thread's last error set to the answer's
// status, or to 59 (unexpected network error) when the data differ. Windows only.
bool PingHost(const std::string& host, PingReply& reply, std::uint8_t timeToLive,
              std::uint32_t timeoutMs, std::uint32_t dataSize);

}  // namespace korvane
