#pragma once

#include <optional>
#include <vector>

#include "simulator/simulated_device.h"

namespace korvane::test {

inline constexpr Endpoint panelEndpoint{0x0100007F, 40000};

// A request as it goes out, the length field right unless told otherwise.
Bytes requestFrame(std::uint32_t code, const Bytes& payload = {},
                   std::optional<std::uint32_t> lengthField = {});

Bytes announcementOf(std::uint32_t total);

struct Reply {
    std::size_t datagrams = 0;  // announcement included
    std::uint64_t firstMs = 0, lastMs = 0;
    std::uint32_t code = 0, status = 0, lengthField = 0;
    Bytes payload;
};

// What a patient panel makes of the datagrams of one answer. An announced total that is not met
// fails the test.
Reply readReply(const std::vector<OutgoingDatagram>& datagrams);

// One panel that talks to one device.
class PanelSide {
  public:
    explicit PanelSide(SimulatedDevice& device) : device_(device) {}

    std::uint64_t nowMs = 0;

    std::vector<OutgoingDatagram> send(const Bytes& datagram, const Endpoint& from = panelEndpoint);

    // The whole message as the panel sends it: announced and in chunks where it is long, then with
    // nowMs moving on.
    std::vector<OutgoingDatagram> sendMessage(const Bytes& message);

    Reply ask(std::uint32_t code, const Bytes& payload = {});

    // The status word of an answer that there must be.
    std::uint32_t statusOf(std::uint32_t code, const Bytes& payload = {});

  private:
    SimulatedDevice& device_;
};

// `size` bytes that differ from their neighbours and from other seeds.
Bytes pattern(std::size_t size, std::uint8_t seed);

}  // namespace korvane::test
