#include <gtest/gtest.h>
#include <random>

#include "device/command_table.h"
#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

Bytes noise(std::mt19937& random, std::size_t size) {
    Bytes bytes(size);
    for (std::uint8_t& byte : bytes) byte = static_cast<std::uint8_t>(random());
    return bytes;
}

// Bytes that are almost requests: known codes, sizes around the right one, random contents.
Bytes almostRequest(std::mt19937& random) {
    const Command& command = commandTable[random() % commandTable.size()];
    std::size_t size =
        command.requestSize == Command::variable ? random() % 7300 : command.requestSize;
    if (random() % 4 == 0) size = random() % (2 * size + 40);
    Bytes payload = noise(random, std::min<std::size_t>(size, 65000));
    if (!payload.empty() && random() % 2 == 0) payload[0] = static_cast<std::uint8_t>(size / 120);
    Bytes frame = frameOf(static_cast<std::uint32_t>(command.code), 0, payload);
    if (random() % 8 == 0) putBigEndian32(frame.data() + 8, random());
    return frame;
}

Bytes hostileDatagram(std::mt19937& random) {
    const auto kind = random() % 8;
    if (kind == 0) return noise(random, random() % 64);
    if (kind == 1) return announcementOf(random() % 2 == 0 ? random() : random() % 70000);
    return almostRequest(random);
}

// The device survives whatever comes, and every single answer is one the panel's protocol allows.
TEST(HostileDatagrams, NothingMakesItFail) {
    std::mt19937 random(20090423);
    SimulatedDevice device({.rebootMs = 200});
    PanelSide panel(device);
    std::size_t answered = 0;
    for (int i = 0; i < 6000; ++i) {
        panel.nowMs += random() % 100;
        panel.endpoint.port = static_cast<std::uint16_t>(random() % 20);
        const Reply reply = readReply(panel.send(hostileDatagram(random)));
        answered += reply.datagrams.empty() ? 0 : 1;
        ASSERT_EQ(reply.frame.payloadLength, reply.payload.size());
        ASSERT_LE(device.state().set.channels[0], 60);
    }
    EXPECT_GT(answered, 1000u) << "most of it should have got through to the commands";
}

}  // namespace
}  // namespace korvane::test
