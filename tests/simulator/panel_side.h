#pragma once

#include <optional>
#include <vector>

#include "simulator/simulated_device.h"
#include "support/scripted_link.h"

namespace korvane::test {

inline constexpr Endpoint panelEndpoint{0x0100007F, 40000};

// What a patient panel makes of the datagrams of one answer.
struct Reply {
    std::vector<OutgoingDatagram> datagrams;  // announcement included
    std::optional<std::uint32_t> announced;   // the total that an announcement told
    CommandFrame frame{};
    Bytes payload;
};
Reply readReply(std::vector<OutgoingDatagram> datagrams);

// One panel that talks to one device.
class PanelSide {
  public:
    explicit PanelSide(SimulatedDevice& device) : device_(device) {}

    std::uint64_t nowMs = 0;
    Endpoint endpoint = panelEndpoint;

    // The answer goes to where the datagram came from, or the test fails.
    std::vector<OutgoingDatagram> send(const Bytes& datagram);

    // The whole request as the panel sends it: announced and in chunks where it is long, then with
    // nowMs moving on.
    Reply ask(std::uint32_t code, const Bytes& payload = {});

  private:
    SimulatedDevice& device_;
};

// `size` bytes that differ from their neighbours and from other seeds.
Bytes pattern(std::size_t size, std::uint8_t seed);

}  // namespace korvane::test
