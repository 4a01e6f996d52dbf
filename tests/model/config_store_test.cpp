#include <gtest/gtest.h>
#include <memory>
#include <numeric>
#include <sstream>
#include <vector>

#include "model/config_model.h"
#include "model/object_bytes.h"
#include "support/configurations.h"
#include "support/recorded_log.h"

namespace korvane {
namespace {

constexpr auto continuous = TableKind::Continuous;
constexpr auto shortTime = TableKind::ShortTime;

MultiplexFrame frameWithSlots(std::uint8_t id, std::size_t slots, std::uint16_t firstService = 0,
                              std::size_t services = 0) {
    MultiplexFrame frame = test::frame(id);
    for (std::size_t i = 0; i < slots; ++i) frame.timeSlots.append(9);
    for (std::size_t i = 0; i < services; ++i)
        frame.services.append(test::service(static_cast<std::uint8_t>(i + 1),
                                            static_cast<std::uint16_t>(firstService + i)));
    return frame;
}

std::string digits(const TimeSlotList& slots) {
    std::string text;
    for (const std::uint8_t slot : slots) text += std::to_string(slot);
    return text;
}

class Store : public testing::Test {
  protected:
    Store() { model_->setMultiplexHeader({2, 21, 0}); }

    // Of the continuous table the slots of each frame, and the pairs of service and channel.
    std::string outline() const {
        std::ostringstream text;
        for (const MultiplexFrame& frame : model_->tables().continuous.frames)
            text << digits(frame.timeSlots) << ' ';
        text << '|';
        for (const ServiceFrequencyEntry& entry : model_->tables().continuousServices.entries)
            text << ' ' << entry.serviceId << '@' << int{entry.channelNumber};
        return text.str();
    }
    void expectDone(int result, const std::string& expected) const {
        EXPECT_EQ(result, 0);
        EXPECT_EQ(outline(), expected);
    }
    int addChannel(ChannelType type, std::uint8_t octet = 1,
                   std::uint32_t position = ConfigModel::atEnd) {
        return model_->addChannel(test::channel(type, octet, 1), position);
    }
    int setSameNetwork() {
        NetworkInfo info;
        EXPECT_EQ(model_->getNetworkInfo(info), 0);
        return model_->setNetworkInfo(info);
    }
    // Whether an operation was refused without a trace.
    template <class Operation>
    void expectRefused(Operation operation, int answer = -1) {
        const auto before = copyOf(model_->tables());
        const FlatChannelList channels = model_->flatChannels();
        EXPECT_EQ(operation(), answer);
        EXPECT_TRUE(model_->tables() == *before);
        EXPECT_TRUE(model_->flatChannels() == channels);
    }

    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
};

TEST_F(Store, FramesAreRenumberedAndTheyAndTheirServicesAnnouncedOnEveryChange) {
    ConfigModel& m = *model_;
    m.addServiceFrequency(continuous, {7, 30, 0});
    m.addServiceFrequency(continuous, {8, 21, 0});  // of the current channel, and unfounded
    expectDone(m.addFrame(continuous, frameWithSlots(0, 1, 10, 2)), "0 | 7@30");
    expectDone(m.addFrame(continuous, frameWithSlots(1, 3, 100, 2)), "0 123 | 100@21 101@21 7@30");
    expectDone(m.addFrame(continuous, frameWithSlots(2, 2, 200, 1), 1),
               "0 12 345 | 200@21 100@21 101@21 7@30");
    expectDone(m.updateFrame(continuous, 1, frameWithSlots(5, 1, 510, 1)),
               "0 1 234 | 510@21 100@21 101@21 7@30");
    expectDone(m.addFrame(continuous, m.tables().continuous.frames[1], 0),  // moves meanwhile
               "0 1 2 345 | 510@21 510@21 100@21 101@21 7@30");
    expectDone(m.removeFrame(continuous, 0), "0 1 234 | 510@21 100@21 101@21 7@30");
    expectDone(m.removeFrame(continuous, 0), "0 123 | 510@21 100@21 101@21 7@30");
    expectDone(m.removeService(continuous, 1, 0), "0 123 | 510@21 101@21 7@30");
    expectDone(m.updateService(continuous, 1, 0, test::service(1, 150)),
               "0 123 | 510@21 150@21 7@30");
    expectDone(m.addService(continuous, 1, test::service(3, 103)),
               "0 123 | 510@21 150@21 103@21 7@30");
    expectDone(m.addFrame(shortTime, frameWithSlots(9, 2, 900, 2)),
               "0 123 | 510@21 150@21 103@21 7@30");
    EXPECT_EQ(digits(m.tables().shortTime.frames[0].timeSlots), "99") << "these stay";
    EXPECT_EQ(m.tables().shortTime.frames[0].kind, shortTime);
    EXPECT_EQ(m.highestFrameId(shortTime), 9);
    EXPECT_EQ(m.highestFrameId(continuous), 5);
    using Place = ConfigModel::ServicePlace;
    EXPECT_EQ(m.findService(103), (Place{continuous, 1, 1}));
    EXPECT_EQ(m.findService(901), (Place{shortTime, 0, 1}));
    EXPECT_EQ(m.findService(101), std::nullopt);
    ASSERT_EQ(m.updateFrame(shortTime, 0, frameWithSlots(8, 1)), 0);
    EXPECT_EQ(m.tables().shortTime.frames[0].kind, shortTime);
    ASSERT_EQ(m.removeFrame(continuous, 0), 0);
    expectDone(m.removeFrame(continuous, 0), "| 7@30");
    ASSERT_EQ(m.addFrame(continuous, frameWithSlots(4, 0)), 0);
    ASSERT_EQ(m.addFrame(continuous, frameWithSlots(3, 0)), 0);
    EXPECT_EQ(m.highestFrameId(continuous), 4) << "not the last one's";
}

TEST_F(Store, SingleSlotsAreEditedInPlace) {
    ConfigModel& m = *model_;
    ASSERT_EQ(m.addFrame(continuous, frameWithSlots(1, 3)), 0);
    expectDone(m.setTimeSlot(continuous, 0, 1, 17), "0172 |");
    expectDone(m.removeTimeSlot(continuous, 0, 0), "172 |");
    expectRefused([&] { return m.setTimeSlot(continuous, 0, 2, 1); });
    expectRefused([&] { return m.removeTimeSlot(continuous, 1, 0); });

    ASSERT_EQ(m.addFrame(continuous, frameWithSlots(2, 4)), 0);
    EXPECT_EQ(digits(m.allocateTimeSlots(continuous, 0, 3)), "012");
    EXPECT_EQ(digits(m.allocateTimeSlots(continuous, 1, 2)), "23");
    EXPECT_EQ(digits(m.allocateTimeSlots(continuous, -1, 1)), "6");
    EXPECT_EQ(digits(m.allocateTimeSlots(shortTime, -1, 1)), "0");
    EXPECT_EQ(m.allocateTimeSlots(continuous, -1, 1000).size(), 40u);
}

TEST_F(Store, WhatNamesNothingIsRefused) {
    ASSERT_EQ(model_->addFrame(continuous, frameWithSlots(1, 1, 100, 1)), 0);
    ASSERT_EQ(addChannel(ChannelType::Data), 0);
    InputChannelRecord odd = test::channel(ChannelType::Data, 1, 2);
    odd.type = 8;
    FlatChannelList list;
    for (const int index : {-1, 1, 1000}) {
        expectRefused([&] { return model_->addService(continuous, index, {}); });
        expectRefused([&] { return model_->updateService(continuous, index, 0, {}); });
        expectRefused([&] { return model_->removeService(continuous, index, 0); });
        expectRefused([&] { return model_->setTimeSlot(continuous, index, 0, 1); });
        expectRefused([&] { return model_->removeTimeSlot(continuous, index, 0); });
    }
    expectRefused([&] { return model_->removeChannel(8, 0); });
    expectRefused([&] { return model_->clearChannels(8); });
    expectRefused([&] { return model_->getChannels(8, list); });
    expectRefused([&] { return model_->updateChannel(0, odd); });
    expectRefused([&] { return model_->addChannel(odd, ConfigModel::atEnd); });
    expectRefused([&] { return addChannel(ChannelType::Data, 1, 2); });
    expectRefused([&] { return model_->addServiceFrequency(shortTime, {}, 1); });
    expectRefused([&] { return model_->addServiceFrequency(shortTime, {}, -2); });
}

TEST_F(Store, WhatWouldBreakALimitOfTheWholeIsRefused) {
    for (int i = 0; i < 60; ++i) ASSERT_EQ(addChannel(static_cast<ChannelType>(i % 8)), 0);
    expectRefused([this] { return addChannel(ChannelType::Esg); });
    // 40 slots and 40 announced services are what all continuous frames share.
    ASSERT_EQ(model_->addFrame(continuous, frameWithSlots(0, 30, 0, 8)), 0);
    for (std::uint8_t i = 1; i < 6; ++i)
        ASSERT_EQ(model_->addFrame(continuous, frameWithSlots(i, 2, i * 10, 8)), 0);
    expectRefused([this] { return model_->addFrame(continuous, frameWithSlots(6, 1)); });
    expectRefused([this] { return model_->updateFrame(continuous, 1, frameWithSlots(1, 3)); });
    const auto six = frameWithSlots(6, 0, 600, 1), seven = frameWithSlots(7, 1, 0, 1);
    expectRefused([&] { return model_->addFrame(continuous, six); }, -2);
    expectRefused([&] { return model_->checkFrame(continuous, -1, six); }, -2);
    expectRefused([&] { return model_->updateFrame(continuous, 0, seven); }, -2);
    expectRefused([&] { return model_->checkFrame(continuous, 0, seven); }, -2);
    expectRefused([&] { return model_->checkFrame(continuous, 6, six); });
    EXPECT_EQ(model_->checkFrame(shortTime, -1, six), 0);
    EXPECT_EQ(model_->checkFrame(continuous, 1, model_->tables().continuous.frames[1]), 0);
    expectRefused([this] { return model_->addServiceFrequency(continuous, {1, 2, 0}); });
    expectRefused([this] { return model_->addService(continuous, 0, test::service(9, 9)); });
    ASSERT_EQ(model_->removeService(continuous, 5, 0), 0);
    ASSERT_EQ(model_->addServiceFrequency(continuous, {1, 30, 0}), 0);
    expectRefused([this] { return model_->addService(continuous, 5, test::service(8, 9)); }, -2);
    NetworkInfo info;
    info.name.assign(257, 'n');
    expectRefused([&] { return model_->setNetworkInfo(info); });
}

TEST_F(Store, AConfigurationBeyondTheLimitsCanBeShrunk) {
    test::editTables(*model_, [](ConfigTables& tables) {
        for (std::uint8_t i = 1; i < 8; ++i)
            tables.continuous.frames.append(frameWithSlots(i, 10, i * 10, 8));
    });
    expectRefused([this] { return model_->updateFrame(continuous, 0, frameWithSlots(1, 11)); });
    EXPECT_EQ(model_->updateFrame(continuous, 0, frameWithSlots(1, 10, 10, 8)), 0);
    EXPECT_EQ(model_->tables().continuousServices.entries.size(), 40u);
    EXPECT_EQ(model_->updateFrame(continuous, 0, frameWithSlots(1, 9, 10, 7)), 0);
    EXPECT_EQ(model_->removeFrame(continuous, 6), 0);
}

TEST_F(Store, ChannelsOfAllTypesMakeOneList) {
    for (const auto type : {ChannelType::Emm, ChannelType::Video, ChannelType::Video})
        ASSERT_EQ(addChannel(type), 0);
    EXPECT_EQ(model_->channels(0)[1].position, 1);
    EXPECT_EQ(model_->channels(5)[0].position, 2);
    InputChannelRecord changed = model_->channels(0)[1];
    changed.port = 77;
    ASSERT_EQ(model_->updateChannel(1, changed), 0);
    EXPECT_EQ(model_->flatChannels()[1].port, 77);
    ASSERT_EQ(model_->clearChannels(0), 0);
    EXPECT_EQ(model_->flatChannels().size(), 1u);
    EXPECT_EQ(model_->flatChannels()[0].position, 0);
}

TEST_F(Store, ChannelIdsGoOnFromTheLastOneIssued) {
    const auto idOfNext = [this] {
        EXPECT_EQ(addChannel(ChannelType::Esg, 1, 0), 0);
        return model_->channels(3)[0].channelId;
    };
    const std::uint32_t& last = model_->tables().outputParams.lastChannelId;
    const auto setLast = [this](std::uint32_t id) {
        test::editTables(*model_, [id](ConfigTables& t) { t.outputParams.lastChannelId = id; });
    };
    setLast(0xF0000000);
    EXPECT_EQ(idOfNext(), 1u);
    EXPECT_EQ(last, 1u);
    model_->clearChannels(3);
    EXPECT_EQ(idOfNext(), 2u);
    setLast(0xEFFFFFFE);
    EXPECT_EQ(idOfNext(), 0xEFFFFFFFu);
    FlatChannelList channels;
    InputChannelRecord record = test::channel(ChannelType::Esg, 1, 1);
    record.channelId = 500;
    channels.append(record);
    model_->setFlatChannels(channels);
    setLast(7);
    EXPECT_EQ(idOfNext(), 501u);
    // A list from elsewhere that holds the largest number there is: ids stay unique.
    record.channelId = 0xFFFFFFFF;
    channels.append(record);
    record.channelId = 0;
    channels.append(record);
    model_->setFlatChannels(channels);
    EXPECT_EQ(idOfNext(), 1u);
}

TEST_F(Store, CandidatesAreTheChannelsThatNoOtherFrameUses) {
    for (std::uint8_t i = 1; i < 4; ++i) ASSERT_EQ(addChannel(ChannelType::Video, i), 0);
    const auto uses = [this](std::size_t channel) {
        ServiceRecord service = test::service(1, 1);
        service.components.append(model_->channels(0)[channel]);
        service.components[0].payloadType = 9;  // beyond the bytes that name the stream
        return service;
    };
    ASSERT_EQ(model_->addFrame(continuous, test::frame(1, {uses(0)})), 0);
    ASSERT_EQ(model_->addFrame(shortTime, test::frame(2, {uses(1)})), 0);
    const auto octets = [this](TableKind kind, int frame) {
        std::string text;
        for (const auto& c : model_->candidateChannels(0, {kind, frame}))
            text += std::to_string(c.address[3]);
        return text;
    };
    // A channel at the front moves the others, and with them their positions.
    for (const std::string front : {"", "4"}) {
        if (!front.empty()) addChannel(ChannelType::Video, 4, 0);
        EXPECT_EQ(octets(continuous, 0), front + "13");
        EXPECT_EQ(octets(shortTime, 0), front + "23");
        EXPECT_EQ(octets(continuous, -1), front + "3");
    }
    EXPECT_TRUE(model_->candidateChannels(8, {continuous, -1}).empty());
}

TEST(Streams, AreTheSameByModeAddressPortAndWhatLiesBetween) {
    const InputChannelRecord one = test::channel(ChannelType::Video, 1, 1);
    for (std::size_t byte = 0; byte < sizeof one; ++byte) {
        InputChannelRecord other = one;
        writableBytesOf(other)[byte] ^= 1;
        EXPECT_EQ(sameStream(one, other), byte == 1 || byte >= 12) << byte;
    }
}

// What came from elsewhere can be more than the table holds once the own services are announced.
TEST_F(Store, TheOwnChannelsPairsStayAndForeignOnesAreCutAtTheEnd) {
    test::RecordedLog log;
    test::editTables(*model_, [](ConfigTables& tables) {
        tables.continuous.frames.append(frameWithSlots(1, 1, 100, 8));
        for (std::uint16_t i = 0; i < 35; ++i) tables.continuousServices.entries.append({i, 30, 0});
    });
    ASSERT_EQ(setSameNetwork(), 0);
    EXPECT_EQ(model_->tables().continuousServices.entries.size(), 40u);
    EXPECT_TRUE(outline().starts_with("9 | 100@21 101@21 "));
    EXPECT_NE(outline().find(" 107@21 0@30 "), std::string::npos);
    EXPECT_TRUE(outline().ends_with(" 31@30"));
    EXPECT_EQ(log.lines(), std::vector<std::string>{"1 持续业务配置表已满, 末尾3项被舍去"});
}

TEST_F(Store, TheNetworksFrequenciesAndTheCsctBelongTogether) {
    for (const std::uint8_t channel : {30, 31}) model_->addFrequencyPoint({channel, 0, {}, 0});
    model_->addServiceFrequency(continuous, {1, 30, 0});
    model_->addServiceFrequency(continuous, {2, 31, 0});
    model_->addServiceFrequency(continuous, {3, 30, 0}, 0);
    model_->addServiceFrequency(shortTime, {4, 30, 0});
    ASSERT_EQ(model_->removeFrequencyPoint(0), 0);
    EXPECT_EQ(outline(), "| 2@31");
    EXPECT_EQ(model_->tables().shortTimeServices.entries.size(), 1u);

    test::editTables(*model_, [](ConfigTables& tables) {
        tables.continuous.frames.append(frameWithSlots(1, 1, 100, 1));
    });
    expectDone(setSameNetwork(), "9 | 100@21 2@31");
}

TEST_F(Store, HeadersAndBlocksAreCarriedWhole) {
    model_->setMultiplexHeader({4, 9, 8});
    EXPECT_EQ(model_->tables().shortTime.header, (std::array<std::uint8_t, 3>{4, 9, 8}));
    EXPECT_EQ(model_->tables().continuous.header[1], 21);
    model_->selectTableSet(0x1FE);
    EXPECT_EQ(model_->tableSet(), 0xFE);
    std::array<std::uint8_t, 12> bytes{};
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{1});
    model_->setHeader(bytes, 44);
    std::array<std::uint8_t, 12> back{};
    std::uint8_t length = 0;
    model_->getHeader(back, length);
    EXPECT_EQ(back, bytes);
    EXPECT_EQ(length, 44);
    EXPECT_EQ(model_->tables().headerValue, 0x0A09);
    ParamBlock264 params{}, paramsBack{};
    params.value2 = 0x1234;
    model_->set264Block(params);
    model_->get264Block(paramsBack);
    EXPECT_EQ(paramsBack, params);
    CaDescriptionTable ca{6, 1, 4, {}}, caBack;
    ca.entries.append({0x0B01, 7, 128, 159, 1, 0});
    model_->setCaTable(ca);
    ASSERT_EQ(model_->appendCaSystem({0x0B02, 8, 128, 159, 1, 0}), 0);
    model_->getCaTable(caBack);
    EXPECT_EQ(caBack.entries[1].caSystemId, 0x0B02);
    caBack.entries.erase(1);
    EXPECT_EQ(caBack, ca);
    for (int i = 2; i < 10; ++i) ASSERT_EQ(model_->appendCaSystem({}), 0);
    expectRefused([this] { return model_->appendCaSystem({}); });
    EXPECT_EQ(model_->reserved(1) + model_->reserved(1, 2) + model_->reserved(1, 2, 3), 0);
}

}  // namespace
}  // namespace korvane
