#include "simulator/udp_server.h"

#include <algorithm>

namespace korvane {

bool UdpServer::open(const std::string& address, std::uint16_t port) {
    const std::uint32_t local = parseIpv4(address.c_str());
    return UdpOpen(&local, port, 0, socket_) == 1;
}

void UdpServer::serve(std::uint32_t longestWaitMs, std::uint64_t (*nowMs)()) {
    sendDue(nowMs());
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
        return;
    for (OutgoingDatagram& datagram :
         device_.receive(ByteView(buffer_).first(length), from, nowMs()))
        pending_.emplace(datagram.sendAtMs, std::move(datagram));
    sendDue(nowMs());
}

void UdpServer::sendDue(std::uint64_t nowMs) {
    constexpr std::uint32_t writableMs = 1000;
    while (!pending_.empty() && pending_.begin()->first <= nowMs) {
        const OutgoingDatagram& datagram = pending_.begin()->second;
        UdpSendTo(socket_, &datagram.to.address, datagram.to.port, writableMs,
                  datagram.bytes.data(), static_cast<std::uint16_t>(datagram.bytes.size()));
        pending_.erase(pending_.begin());
    }
}

}  // namespace korvane
