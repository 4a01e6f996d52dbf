#include "simulator/panel_side.h"

#include <gtest/gtest.h>

namespace korvane::test {

Reply readReply(std::vector<OutgoingDatagram> datagrams) {
    Bytes message;
    Reply reply{std::move(datagrams), {}, {}, {}};
    for (const OutgoingDatagram& datagram : reply.datagrams) {
        const Bytes& bytes = datagram.bytes;
        if (!reply.announced && bytes.size() == Announcement::size)
            reply.announced = getBigEndian32(bytes.data() + 4);
        else
            message.insert(message.end(), bytes.begin(), bytes.end());
    }
    if (message.size() < CommandFrame::size) return reply;
    reply.frame = CommandFrame::read(message.data());
    reply.payload.assign(message.begin() + CommandFrame::size, message.end());
    return reply;
}

std::vector<OutgoingDatagram> PanelSide::send(const Bytes& datagram) {
    auto answer = device_.receive(datagram, endpoint, nowMs);
    for (const OutgoingDatagram& one : answer) EXPECT_EQ(one.to, endpoint);
    return answer;
}

Reply PanelSide::ask(std::uint32_t code, const Bytes& payload) {
    const Bytes message = frameOf(code, 0, payload);
    if (message.size() <= 65536) return readReply(send(message));
    auto answer = send(announcementOf(static_cast<std::uint32_t>(message.size())));
    for (std::size_t at = 0; at < message.size(); at += 30720) {
        nowMs += at > 0 ? 50 : 0;
        EXPECT_TRUE(answer.empty()) << "answered before the train was complete";
        const std::size_t end = std::min(at + 30720, message.size());
        answer = send(Bytes(message.data() + at, message.data() + end));
    }
    return readReply(std::move(answer));
}

Bytes pattern(std::size_t size, std::uint8_t seed) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(seed + i * 7 + i / 251);
    return bytes;
}

}  // namespace korvane::test
