#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>

#include "device/command_frame.h"
#include "device/udp.h"
#include "simulator/simulated_device.h"

namespace korvane {

// Puts a SimulatedDevice on a real UDP socket.
class UdpServer {
  public:
    explicit UdpServer(SimulatedDevice& device) : device_(device) {}
    ~UdpServer() { UdpClose(socket_); }
    UdpServer(const UdpServer&) = delete;
    UdpServer& operator=(const UdpServer&) = delete;

    // False when the address and port cannot be had.
    bool open(const std::string& address, std::uint16_t port);

    // One turn: sends what is due and waits up to `longestWaitMs` for one datagram. How many
    // datagrams the system refused to send: 65,507 bytes are the most that UDP carries.
    std::size_t serve(std::uint32_t longestWaitMs, std::uint64_t (*nowMs)());

  private:
    std::size_t sendDue(std::uint64_t nowMs);

    SimulatedDevice& device_;
    UdpSocket socket_ = 0;
    std::multimap<std::uint64_t, OutgoingDatagram> pending_;  // by time; equal times keep order
    std::array<std::uint8_t, wire::largestDatagram> buffer_;
};

}  // namespace korvane
