#pragma once

#include <cstddef>
#include <cstdint>

// Datagram sockets as thin free functions, the same on Windows and elsewhere. IPv4 addresses are
// 32-bit values in network byte order, ports are in host order. No operation throws.

namespace korvane {

// A system socket; 0 is no socket.
using UdpSocket = std::uintptr_t;

enum class UdpDirection { Readable = 0, Writable = 1 };

// Opens a socket with 65,536-byte buffers and binds it to `localAddress` (null: any) and
// `localPort` (0: any). The third argument has no meaning. 1, or 0 when it failed.
int UdpOpen(const std::uint32_t* localAddress, std::uint16_t localPort, int ignored,
            UdpSocket& out);

// Always 0.
int UdpClose(UdpSocket socket);

// 0 ready, -1 the wait failed, -2 timed out.
int UdpWait(UdpSocket socket, std::uint32_t timeoutMs, UdpDirection direction);

// Sends one datagram of `length` bytes. The bytes sent; -1 when the socket was not writable in
// time; the system's error code, a positive number, when the system refused: callers that look for
// negative results take a refused send for a success, and the missing answer tells.
int UdpSendTo(UdpSocket socket, const std::uint32_t* address, std::uint16_t port,
              std::uint32_t timeoutMs, const void* data, std::uint16_t length);

// Receives one datagram of up to `capacity` bytes. 0 and its length; -1 when nothing came within
// the timeout, the receive failed, the datagram was empty or longer than `capacity`. No socket: 0,
// with `received` untouched.
int UdpRecvFrom(UdpSocket socket, void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs);

// As UdpRecvFrom, and tells who sent it.
int UdpRecvFrom(UdpSocket socket, void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs, std::uint32_t& fromAddress, std::uint16_t& fromPort);

// A dotted IPv4 text in network byte order; 0xFFFFFFFF when it is none.
std::uint32_t parseIpv4(const char* text);

}  // namespace korvane
