#include "simulator/panel_side.h"

#include <algorithm>
#include <gtest/gtest.h>

#include "device/command_frame.h"

namespace korvane::test {

Bytes requestFrame(std::uint32_t code, const Bytes& payload,
                   std::optional<std::uint32_t> lengthField) {
    Bytes frame;
    frame.reserve(12 + payload.size());
    frame.resize(12);
    putBigEndian32(frame.data(), code);
    putBigEndian32(frame.data() + 8,
                   lengthField.value_or(static_cast<std::uint32_t>(payload.size())));
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

Bytes announcementOf(std::uint32_t total) {
    Bytes bytes = {0x11, 0x22, 0, 0, 0, 0, 0, 0};
    putBigEndian32(bytes.data() + 4, total);
    return bytes;
}

Reply readReply(const std::vector<OutgoingDatagram>& datagrams) {
    Reply reply;
    reply.datagrams = datagrams.size();
    if (datagrams.empty()) return reply;
    reply.firstMs = datagrams.front().sendAtMs;
    reply.lastMs = datagrams.back().sendAtMs;
    Bytes message = datagrams.front().bytes;
    if (message.size() == 8 && message[0] == 0x11 && message[1] == 0x22) {
        const std::uint32_t total = getBigEndian32(message.data() + 4);
        message.clear();
        for (std::size_t i = 1; i < datagrams.size(); ++i)
            message.insert(message.end(), datagrams[i].bytes.begin(), datagrams[i].bytes.end());
        EXPECT_EQ(message.size(), total);
    }
    if (message.size() < 12) return reply;
    reply.code = getBigEndian32(message.data());
    reply.status = getBigEndian32(message.data() + 4);
    reply.lengthField = getBigEndian32(message.data() + 8);
    reply.payload.assign(message.begin() + 12, message.end());
    return reply;
}

std::vector<OutgoingDatagram> PanelSide::send(const Bytes& datagram, const Endpoint& from) {
    return device_.receive(datagram, from, nowMs);
}

std::vector<OutgoingDatagram> PanelSide::sendMessage(const Bytes& message) {
    if (message.size() <= 65536) return send(message);
    EXPECT_TRUE(send(announcementOf(static_cast<std::uint32_t>(message.size()))).empty());
    std::vector<OutgoingDatagram> answer;
    for (std::size_t at = 0; at < message.size(); at += 30720) {
        EXPECT_TRUE(answer.empty()) << "answered before the train was complete";
        const std::size_t end = std::min(at + 30720, message.size());
        answer = send(Bytes(message.data() + at, message.data() + end));
        nowMs += 50;
    }
    return answer;
}

Reply PanelSide::ask(std::uint32_t code, const Bytes& payload) {
    return readReply(sendMessage(requestFrame(code, payload)));
}

std::uint32_t PanelSide::statusOf(std::uint32_t code, const Bytes& payload) {
    const Reply reply = ask(code, payload);
    EXPECT_EQ(reply.code, code);
    return reply.status;
}

Bytes pattern(std::size_t size, std::uint8_t seed) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(seed + i * 7 + i / 251);
    return bytes;
}

}  // namespace korvane::test
