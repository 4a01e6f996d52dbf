// The one place that knows both socket libraries.
#ifdef _WIN32
#include <winsock2.h>
#include <mstcpip.h>
#include <ws2tcpip.h>
#else
#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#endif

#include "device/udp.h"

namespace korvane {
namespace {

#ifdef _WIN32
using NativeSocket = SOCKET;
constexpr NativeSocket noSocket = INVALID_SOCKET;

int lastError() {
    return WSAGetLastError();
}
void closeNative(NativeSocket socket) {
    closesocket(socket);
}
bool startSockets() {
    static const bool started = [] {
        WSADATA data;
        return WSAStartup(MAKEWORD(1, 1), &data) == 0;
    }();
    return started;
}
// A device that restarts refuses a datagram or two; the refusal must not end the next receive.
void ignoreRefusals(NativeSocket socket) {
    BOOL report = FALSE;
    DWORD returned = 0;
    constexpr DWORD sioUdpConnReset = 0x9800000C;
    WSAIoctl(socket, sioUdpConnReset, &report, sizeof report, nullptr, 0, &returned, nullptr,
             nullptr);
}
#else
using NativeSocket = int;
constexpr NativeSocket noSocket = -1;

int lastError() {
    return errno;
}
void closeNative(NativeSocket socket) {
    ::close(socket);
}
bool startSockets() {
    return true;
}
void ignoreRefusals(NativeSocket) {}
#endif

NativeSocket native(UdpSocket socket) {
    return static_cast<NativeSocket>(socket);
}

sockaddr_in endpoint(std::uint32_t address, std::uint16_t port) {
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_addr.s_addr = address;
    result.sin_port = htons(port);
    return result;
}

// select() cannot take every descriptor a process may hold.
bool selectable([[maybe_unused]] NativeSocket socket) {
#ifdef _WIN32
    return true;
#else
    return socket >= 0 && socket < FD_SETSIZE;
#endif
}

}  // namespace

int UdpOpen(const std::uint32_t* localAddress, std::uint16_t localPort, int, UdpSocket& out) {
    if (!startSockets()) return 0;
    const NativeSocket socket = ::socket(AF_INET, SOCK_DGRAM, IPPROTO_UDP);
    if (socket == noSocket) return 0;
    const int bufferSize = 65536;
    const auto* option = reinterpret_cast<const char*>(&bufferSize);
    setsockopt(socket, SOL_SOCKET, SO_SNDBUF, option, sizeof bufferSize);
    setsockopt(socket, SOL_SOCKET, SO_RCVBUF, option, sizeof bufferSize);
    ignoreRefusals(socket);
    const sockaddr_in local = endpoint(localAddress ? *localAddress : htonl(INADDR_ANY), localPort);
    if (!selectable(socket) ||
        bind(socket, reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0) {
        closeNative(socket);
        return 0;
    }
    out = static_cast<UdpSocket>(socket);
    return 1;
}

int UdpClose(UdpSocket socket) {
    if (socket != 0) closeNative(native(socket));
    return 0;
}

int UdpWait(UdpSocket socket, std::uint32_t timeoutMs, UdpDirection direction) {
    fd_set set;
    FD_ZERO(&set);
    FD_SET(native(socket), &set);
    timeval timeout{};
    timeout.tv_sec = static_cast<decltype(timeout.tv_sec)>(timeoutMs / 1000);
    timeout.tv_usec = static_cast<decltype(timeout.tv_usec)>(timeoutMs % 1000 * 1000);
    const bool reading = direction == UdpDirection::Readable;
    const int ready = select(static_cast<int>(native(socket)) + 1, reading ? &set : nullptr,
                             reading ? nullptr : &set, nullptr, &timeout);
    if (ready < 0) return -1;
    return ready > 0 ? 0 : -2;
}

int UdpSendTo(UdpSocket socket, const std::uint32_t* address, std::uint16_t port,
              std::uint32_t timeoutMs, const void* data, std::uint16_t length) {
    if (UdpWait(socket, timeoutMs, UdpDirection::Writable) != 0) return -1;
    const sockaddr_in to = endpoint(*address, port);
    const auto sent = sendto(native(socket), static_cast<const char*>(data), length, 0,
                             reinterpret_cast<const sockaddr*>(&to), sizeof to);
    return sent < 0 ? lastError() : static_cast<int>(sent);
}

int UdpRecvFrom(UdpSocket socket, void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs, std::uint32_t& fromAddress, std::uint16_t& fromPort) {
    if (socket == 0) return 0;
    if (UdpWait(socket, timeoutMs, UdpDirection::Readable) != 0) return -1;
    sockaddr_in from{};
    socklen_t fromLength = sizeof from;
#ifdef _WIN32
    // Winsock fails by itself when the datagram does not fit.
    const int length =
        recvfrom(native(socket), static_cast<char*>(buffer), static_cast<int>(capacity), 0,
                 reinterpret_cast<sockaddr*>(&from), &fromLength);
#else
    const ssize_t length = recvfrom(native(socket), buffer, capacity, MSG_TRUNC,
                                    reinterpret_cast<sockaddr*>(&from), &fromLength);
#endif
    if (length <= 0 || static_cast<std::size_t>(length) > capacity) return -1;
    received = static_cast<std::uint32_t>(length);
    fromAddress = from.sin_addr.s_addr;
    fromPort = ntohs(from.sin_port);
    return 0;
}

int UdpRecvFrom(UdpSocket socket, void* buffer, std::size_t capacity, std::uint32_t& received,
                std::uint32_t timeoutMs) {
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    return UdpRecvFrom(socket, buffer, capacity, received, timeoutMs, address, port);
}

std::uint32_t parseIpv4(const char* text) {
    return inet_addr(text);
}

}  // namespace korvane
