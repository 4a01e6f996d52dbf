#include <cstring>
#include <gtest/gtest.h>

#include "device/command_table.h"
#include "simulator/panel_side.h"
#include "simulator/sample_configuration.h"

namespace korvane::test {
namespace {

struct Block {
    std::uint32_t setCode;
    std::size_t offset, size;
};

// Where each block stands in the image, from the device's own documents.
constexpr Block blocks[] = {
    {2003, 16, 624},    {2004, 640, 314244}, {2005, 629128, 168},    {2006, 629464, 264},
    {2007, 629728, 92}, {2008, 629820, 72},  {2009, 314884, 314244}, {2010, 629296, 168},
};

class Device : public testing::Test {
  protected:
    const std::uint8_t* setImage() const {
        return reinterpret_cast<const std::uint8_t*>(&device_.state().set.image);
    }
    // A small configuration change, sent but not applied.
    void setHeader(std::uint8_t byte5) {
        Bytes header(13, 0);
        header[6] = byte5;
        panel_.ask(2000, {0});
        EXPECT_EQ(panel_.statusOf(2001, header), 0u);
        EXPECT_EQ(panel_.statusOf(2999, {0}), 0u);
    }

    SimulatedDevice device_;
    PanelSide panel_{device_};
};

TEST_F(Device, EveryBlockComesBackAsItWasSentFromItsPlaceInTheImage) {
    EXPECT_EQ(panel_.statusOf(2000, {7}), 0u);
    std::uint8_t seed = 1;
    for (const Block& block : blocks)
        EXPECT_EQ(panel_.statusOf(block.setCode, pattern(block.size, seed++)), 0u);
    EXPECT_EQ(panel_.statusOf(2002, pattern(974, 99)), 0u);
    EXPECT_EQ(panel_.statusOf(2001, {33, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}), 0u);
    EXPECT_EQ(panel_.statusOf(2999, {7}), 0u);

    seed = 1;
    for (const Block& block : blocks) {
        const Bytes expected = pattern(block.size, seed++);
        EXPECT_EQ(panel_.ask(block.setCode + 1000).payload, expected) << block.setCode;
        EXPECT_EQ(std::memcmp(setImage() + block.offset, expected.data(), block.size), 0)
            << block.setCode;
    }
    EXPECT_EQ(panel_.ask(3002).payload, pattern(974, 99));
    EXPECT_EQ(panel_.ask(3001).payload, Bytes({33, 0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}));
    EXPECT_EQ(setImage()[0], 0);
    EXPECT_EQ(setImage()[11], 11);
    EXPECT_EQ(setImage()[12], 33);
}

TEST_F(Device, AnswersHaveTheSizesThatThePanelChecks) {
    for (const Command& command : commandTable) {
        if (command.answerSize == 0 || command.answerSize == Command::variable) continue;
        const Reply reply =
            panel_.ask(static_cast<std::uint32_t>(command.code), Bytes(command.requestSize));
        EXPECT_EQ(reply.payload.size(), command.answerSize) << command.name;
        EXPECT_EQ(reply.status, 0u) << command.name;
    }
}

TEST_F(Device, BlocksAreTakenOnlyBetweenBeginAndEnd) {
    EXPECT_EQ(panel_.statusOf(2008, Bytes(72)), 3u);
    EXPECT_EQ(panel_.statusOf(2999, {0}), 3u);
    panel_.ask(2000, {0});
    EXPECT_EQ(panel_.statusOf(4000), 3u) << "half a configuration is not applied";
    panel_.ask(2999, {0});
    EXPECT_EQ(panel_.statusOf(2008, Bytes(72)), 3u);
    EXPECT_EQ(panel_.statusOf(4000), 0u);
}

TEST_F(Device, WhatWasSetIsAppliedByActivation) {
    const std::uint8_t before = device_.state().applied.image.header.bytes[5];
    setHeader(before + 1);
    EXPECT_EQ(panel_.ask(3001).payload[6], before + 1) << "the panel sees what it set";
    EXPECT_EQ(device_.state().applied.image.header.bytes[5], before);
    panel_.ask(103, pattern(41944, 1));
    panel_.ask(1, {0});
    EXPECT_FALSE(device_.state().applied == device_.state().set);
    EXPECT_EQ(panel_.statusOf(4000), 0u);
    EXPECT_EQ(device_.state().applied.image.header.bytes[5], before + 1);
    EXPECT_TRUE(device_.state().applied == device_.state().set);
}

TEST_F(Device, InputChannelLists) {
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, std::size_t{60}}) {
        Bytes list = pattern(1 + count * 120, 8);
        list[0] = static_cast<std::uint8_t>(count);
        EXPECT_EQ(panel_.statusOf(1, list), 0u);
        EXPECT_EQ(panel_.ask(2).payload, list);
    }
    const Bytes kept = panel_.ask(2).payload;
    Bytes tooMany(1 + 61 * 120);
    tooMany[0] = 61;
    EXPECT_EQ(panel_.statusOf(1, tooMany), 4u);
    EXPECT_EQ(panel_.statusOf(1), 4u);
    EXPECT_EQ(panel_.statusOf(1, Bytes{1}), 2u);
    EXPECT_EQ(panel_.statusOf(1, Bytes(122, 1)), 2u);
    EXPECT_EQ(panel_.ask(2).payload, kept);
}

TEST_F(Device, RebootIsSilentAndForgetsWhatWasNotApplied) {
    const Bytes paramsBefore = panel_.ask(101).payload;
    setHeader(77);
    panel_.ask(100, pattern(144, 1));
    EXPECT_EQ(panel_.statusOf(4001), 0u) << "answered before the silence";
    EXPECT_EQ(panel_.ask(4006).datagrams, 0u);
    panel_.nowMs = 14'999;
    EXPECT_EQ(panel_.ask(4006).datagrams, 0u);
    panel_.nowMs = 15'000;
    EXPECT_EQ(panel_.ask(4006).payload, Bytes({0, 1})) << "counts from the start again";
    EXPECT_NE(panel_.ask(3001).payload[6], 77);
    EXPECT_EQ(panel_.ask(101).payload, paramsBefore);
}

TEST_F(Device, RebootKeepsWhatWasApplied) {
    setHeader(77);
    panel_.ask(4000);
    panel_.ask(100, pattern(144, 1));
    panel_.ask(102);
    panel_.ask(4001);
    panel_.nowMs = 20'000;
    EXPECT_EQ(panel_.ask(3001).payload[6], 77);
    EXPECT_EQ(panel_.ask(101).payload, pattern(144, 1));
}

TEST_F(Device, RestoreDefaultsBringsTheSampleBackButKeepsTheAddresses) {
    setHeader(77);
    panel_.ask(1, {0});
    panel_.ask(103, Bytes(41944));
    panel_.ask(100, pattern(144, 1));
    EXPECT_EQ(panel_.statusOf(4002), 0u);
    EXPECT_TRUE(device_.state().set == *sampleConfiguration());
    EXPECT_TRUE(device_.state().applied == *sampleConfiguration());
    EXPECT_EQ(panel_.ask(101).payload, pattern(144, 1));
}

TEST_F(Device, SummaryIsTheTimeOfDay) {
    SimulatedDevice device(*sampleState("127.0.0.1"), *sampleConfiguration(), {},
                           [] { return WallTime{2024, 12, 31, 2, 23, 59, 58}; });
    const Bytes expected = {0, 2, 0x07, 0xE8, 0, 12, 0, 31, 0, 2, 0, 23, 0, 59, 0, 58, 0, 0};
    EXPECT_EQ(PanelSide(device).ask(4008, {2}).payload, expected);
}

TEST_F(Device, EventsTellWhatHappened) {
    std::vector<DeviceEvent> events;
    device_.onEvent([&events](const DeviceEvent& event) { events.push_back(event); });
    panel_.ask(4006);
    panel_.ask(2008, Bytes(72));
    panel_.send(Bytes(5));
    std::string error;
    device_.faults().add(*parseFault("silence:1", error));
    panel_.ask(4000);
    ASSERT_EQ(events.size(), 4u);
    EXPECT_EQ(events[0].kind, DeviceEvent::Kind::Poll);
    EXPECT_EQ(events[0].text, "GetHeartbeat (4006), 0 bytes -> done, 2 bytes");
    EXPECT_EQ(events[1].kind, DeviceEvent::Kind::Request);
    EXPECT_EQ(events[1].status, 3u);
    EXPECT_NE(events[1].text.find("refused, status 3 (no BeginConfigSet before)"),
              std::string::npos)
        << events[1].text;
    EXPECT_EQ(events[2].kind, DeviceEvent::Kind::Stray);
    EXPECT_FALSE(events[3].answered);
    EXPECT_EQ(events[3].text, "ActivateConfig (4000), 0 bytes -> nothing [silence]");
}

}  // namespace
}  // namespace korvane::test
