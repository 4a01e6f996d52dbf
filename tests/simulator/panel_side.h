#pragma once

#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "device/command_frame.h"
#include "simulator/simulated_device.h"

namespace korvane::test {

inline const Endpoint panelEndpoint{0x0100007F, 40000};

// A request as it goes out, the length field right unless told otherwise.
inline Bytes requestFrame(std::uint32_t code, const Bytes& payload = {},
                          std::optional<std::uint32_t> lengthField = {}) {
    Bytes frame(12);
    putBigEndian32(frame.data(), code);
    putBigEndian32(frame.data() + 8,
                   lengthField.value_or(static_cast<std::uint32_t>(payload.size())));
    frame.insert(frame.end(), payload.begin(), payload.end());
    return frame;
}

inline Bytes announcementOf(std::uint32_t total) {
    Bytes bytes = {0x11, 0x22, 0, 0, 0, 0, 0, 0};
    putBigEndian32(bytes.data() + 4, total);
    return bytes;
}

struct Reply {
    std::size_t datagrams = 0;  // announcement included
    std::uint64_t firstMs = 0, lastMs = 0;
    std::uint32_t code = 0, status = 0, lengthField = 0;
    Bytes payload;
};

// What a patient panel makes of the datagrams of one answer. An announced total that is not met
// fails the test.
inline Reply readReply(const std::vector<OutgoingDatagram>& datagrams) {
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

// One panel that talks to one device.
class PanelSide {
  public:
    explicit PanelSide(SimulatedDevice& device) : device_(device) {}

    std::uint64_t nowMs = 0;

    std::vector<OutgoingDatagram> send(const Bytes& datagram,
                                       const Endpoint& from = panelEndpoint) {
        return device_.receive(datagram, from, nowMs);
    }

    // The whole message as the panel sends it: announced and in chunks where it is long.
    std::vector<OutgoingDatagram> sendMessage(const Bytes& message) {
        if (message.size() <= 65536) return send(message);
        EXPECT_TRUE(send(announcementOf(static_cast<std::uint32_t>(message.size()))).empty());
        std::vector<OutgoingDatagram> answer;
        for (std::size_t at = 0; at < message.size(); at += 30720) {
            EXPECT_TRUE(answer.empty()) << "answered before the train was complete";
            const std::size_t end = std::min(at + 30720, message.size());
            answer = send(Bytes(message.begin() + static_cast<std::ptrdiff_t>(at),
                                message.begin() + static_cast<std::ptrdiff_t>(end)));
            nowMs += 50;
        }
        return answer;
    }

    Reply ask(std::uint32_t code, const Bytes& payload = {}) {
        return readReply(sendMessage(requestFrame(code, payload)));
    }

    std::uint32_t statusOf(std::uint32_t code, const Bytes& payload = {}) {
        const Reply reply = ask(code, payload);
        EXPECT_EQ(reply.code, code);
        return reply.status;
    }

  private:
    SimulatedDevice& device_;
};

// `size` bytes that differ from their neighbours and from other seeds.
inline Bytes pattern(std::size_t size, std::uint8_t seed) {
    Bytes bytes(size);
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<std::uint8_t>(seed + i * 7 + i / 251);
    return bytes;
}

}  // namespace korvane::test
