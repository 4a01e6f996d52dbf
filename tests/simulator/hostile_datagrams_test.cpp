#include <gtest/gtest.h>
#include <random>

#include "device/command_table.h"
#include "simulator/panel_side.h"

namespace korvane::test {
namespace {

// Bytes that are almost requests: known codes, sizes around the right one, random contents.
Bytes almostRequest(std::mt19937& random) {
    const Command& command = commandTable[random() % commandTable.size()];
    std::size_t size =
        command.requestSize == Command::variable ? random() % 7300 : command.requestSize;
    if (random() % 4 == 0) size = random() % (2 * size + 40);
    size = std::min<std::size_t>(size, 65000);
    Bytes payload(size);
    for (std::uint8_t& byte : payload) byte = static_cast<std::uint8_t>(random());
    if (!payload.empty() && random() % 2 == 0) payload[0] = static_cast<std::uint8_t>(size / 120);
    std::optional<std::uint32_t> lengthField;
    if (random() % 8 == 0) lengthField = random();
    return requestFrame(static_cast<std::uint32_t>(command.code), payload, lengthField);
}

Bytes hostileDatagram(std::mt19937& random) {
    switch (random() % 8) {
        case 0: {
            Bytes noise(random() % 64);
            for (std::uint8_t& byte : noise) byte = static_cast<std::uint8_t>(random());
            return noise;
        }
        case 1:
            return announcementOf(random() % 2 == 0 ? random() : random() % 70000);
        default:
            return almostRequest(random);
    }
}

// The device survives whatever comes, and every single answer is one the panel's protocol allows.
TEST(HostileDatagrams, NothingMakesItFail) {
    std::mt19937 random(20090423);
    SimulationSettings settings;
    settings.rebootMs = 200;
    SimulatedDevice device(settings);
    PanelSide panel(device);
    std::size_t answered = 0;
    for (int i = 0; i < 6000; ++i) {
        panel.nowMs += random() % 100;
        const Endpoint from{panelEndpoint.address, static_cast<std::uint16_t>(random() % 20)};
        const auto datagrams = panel.send(hostileDatagram(random), from);
        for (const OutgoingDatagram& datagram : datagrams) ASSERT_EQ(datagram.to, from);
        const Reply reply = readReply(datagrams);
        if (datagrams.empty()) continue;
        ++answered;
        ASSERT_EQ(reply.lengthField, reply.payload.size());
        ASSERT_LE(device.state().set.channels[0], 60);
    }
    EXPECT_GT(answered, 1000u) << "most of it should have got through to the commands";
}

// Counts above the arrays, in every place that has one, once they are applied.
TEST(HostileDatagrams, ImageFullOfOnesIsAppliedAndReported) {
    SimulatedDevice device;
    PanelSide panel(device);
    EXPECT_EQ(panel.statusOf(2000, {0xFF}), 0u);
    for (const Command& command : commandTable) {
        if (!command.isBlock() || command.requestSize == 0) continue;
        const auto code = static_cast<std::uint32_t>(command.code);
        EXPECT_EQ(panel.statusOf(code, Bytes(command.requestSize, 0xFF)), 0u) << command.name;
    }
    EXPECT_EQ(panel.statusOf(2999, {0xFF}), 0u);
    EXPECT_EQ(panel.statusOf(103, Bytes(41944, 0xFF)), 0u);
    EXPECT_EQ(panel.statusOf(4000), 0u);
    panel.nowMs += 1'000'000;
    const Reply status = panel.ask(4007);
    ASSERT_EQ(status.payload.size(), 48332u);
    EXPECT_EQ(status.payload[11], 40) << "frames";
    EXPECT_EQ(status.payload[12 + 13], 40) << "time slots of the first";
    EXPECT_EQ(status.payload[12 + 54], 8) << "its sub-frames";
}

TEST(HostileDatagrams, AnnouncementsFromManySendersDoNotPileUp) {
    SimulatedDevice device;
    PanelSide panel(device);
    const auto sender = [](std::uint32_t number) { return Endpoint{number, 1}; };
    for (std::uint32_t number = 1; number <= 17; ++number, ++panel.nowMs)
        panel.send(announcementOf(400000), sender(number));
    EXPECT_FALSE(panel.send(requestFrame(4006), sender(1)).empty()) << "the oldest gave way";
    EXPECT_TRUE(panel.send(requestFrame(4006), sender(2)).empty()) << "taken for its train";
    EXPECT_TRUE(panel.send(requestFrame(4006), sender(17)).empty());
}

}  // namespace
}  // namespace korvane::test
