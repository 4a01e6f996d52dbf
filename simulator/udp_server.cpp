#include "simulator/udp_server.h"

#include <algorithm>

namespace korvane {

bool UdpServer::open(const std::string& address, std::uint16_t port) {
    const std::uint32_t local = parseIpv4(address.c_str());
    return UdpOpen(&local, port, 0, socket_) == 1;
}

std::size_t UdpServer::serve(std::uint32_t longestWaitMs, std::uint64_t (*nowMs)()) {
    const std::size_t refused = sendDue(nowMs());
    std::uint64_t waitMs = longestWaitMs;
    if (!pending_.empty()) {
        const std::uint64_t now = nowMs();
        const std::uint64_t next = pending_.begin()->first;
        waitMs = std::min(waitMs, next > now ? next - now : 0);
    }
    std::uint32_t length = 0;
    Endpoint from;
    if (UdpRecvFrom(socket_, buffer_.data(), buffer_.size(), length,
                    static_cast<std::uint32_t>(waitMs), from.address, from.port) != 0)
        return refused;
    for (OutgoingDatagram& datagram :
         device_.receive(ByteView(buffer_).first(length), from, nowMs()))
        pending_.emplace(datagram.sendAtMs, std::move(datagram));
    return refused + sendDue(nowMs());
}

std::size_t UdpServer::sendDue(std::uint64_t nowMs) {
    constexpr std::uint32_t writableMs = 1000;
    std::size_t refused = 0;
    while (!pending_.empty() && pending_.begin()->first <= nowMs) {
        const OutgoingDatagram& datagram = pending_.begin()->second;
        const auto length = static_cast<std::uint16_t>(datagram.bytes.size());
        if (UdpSendTo(socket_, &datagram.to.address, datagram.to.port, writableMs,
                      datagram.bytes.data(), length) != length)
            ++refused;
        pending_.erase(pending_.begin());
    }
    return refused;
}

}  // namespace korvane
