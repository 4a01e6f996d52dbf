#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace korvane {

// The seam to the network and to time: everything about a device exchange that waits or leaves the
// process. Production is UdpDeviceLink; tests answer by script and let no time pass.
class DeviceLink {
  public:
    virtual ~DeviceLink() = default;

    // Opens a socket at any local address and port. False when that failed.
    virtual bool open() = 0;
    virtual void close() = 0;

    // Makes every wait and sleep under way end at once, and those that follow fail, until the next
    // open(). May be called from any thread.
    virtual void cancel() = 0;

    // One datagram; results as UdpSendTo has them (udp.h).
    virtual int send(std::uint32_t address, std::uint16_t port, std::uint32_t timeoutMs,
                     const void* data, std::uint16_t length) = 0;
    // One datagram; results as UdpRecvFrom has them, but -1 without a socket.
    virtual int receive(void* buffer, std::size_t capacity, std::uint32_t& received,
                        std::uint32_t timeoutMs) = 0;

    // Whether the host answers one ICMP echo.
    virtual bool isReachable(const std::string& host) = 0;

    virtual void sleep(std::uint32_t milliseconds) = 0;
    // Milliseconds of a monotonic clock that wraps after 2^32.
    virtual std::uint32_t ticks() = 0;
};

// Sends a long buffer as a train of datagrams of at most `chunkSize` bytes with a pause of 50 ms
// after each, the last included: that paces it to what the device's receive queue holds.
// 0, or the negative result of the send that failed.
int UdpSendChunked(DeviceLink& link, std::uint32_t address, std::uint16_t port, const void* data,
                   std::uint32_t length, std::uint16_t chunkSize);

}  // namespace korvane
