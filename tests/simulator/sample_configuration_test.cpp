#include "simulator/sample_configuration.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <numeric>
#include <set>

#include "simulator/gbk_texts.h"
#include "simulator/status_generator.h"

namespace korvane::test {
namespace {

class Sample : public testing::Test {
  protected:
    template <class Visit>
    void forEachService(Visit visit) const {
        for (const MultiplexTable* table : {&tables_->continuous, &tables_->shortTime})
            for (const MultiplexFrame& frame : table->frames)
                for (const ServiceRecord& service : frame.services) visit(frame, service);
    }

    std::unique_ptr<ConfigTables> tables_ = sampleTables();
    FlatChannelList channels_ = sampleChannels();
};

TEST_F(Sample, ChannelsObeyTheEditorsRules) {
    std::set<std::pair<std::array<std::uint8_t, 4>, std::uint16_t>> addresses;
    std::set<std::uint32_t> ids;
    std::array<int, limits::channelTypes> ofType{};
    for (std::size_t i = 0; i < channels_.size(); ++i) {
        const InputChannelRecord& channel = channels_[i];
        EXPECT_EQ(channel.position, i);
        EXPECT_TRUE(addresses.emplace(channel.address, channel.port).second) << i;
        EXPECT_TRUE(ids.insert(channel.channelId).second) << i;
        EXPECT_GE(channel.address[0], 224);
        EXPECT_LE(channel.address[0], 239);
        EXPECT_LE(channel.payloadType, 127);
        ASSERT_LT(channel.type, limits::channelTypes);
        ++ofType[channel.type];
        const bool conditionalAccess = channel.type == 4 || channel.type == 5;
        EXPECT_EQ(conditionalAccess, channel.dataUnitType >= 128 && channel.dataUnitType <= 159);
    }
    for (const int count : ofType) EXPECT_GT(count, 0);
    EXPECT_TRUE(std::ranges::is_sorted(channels_, {}, &InputChannelRecord::type));
    EXPECT_EQ(tables_->outputParams.lastChannelId, *ids.rbegin());
}

TEST_F(Sample, ServicesFitTheirFramesAndUseTheListedChannels) {
    std::set<std::uint16_t> ids;
    forEachService([&](const MultiplexFrame& frame, const ServiceRecord& service) {
        EXPECT_TRUE(ids.insert(service.serviceId).second) << service.serviceId;
        EXPECT_GE(service.parameters[0], 1);
        EXPECT_LE(service.parameters[0], 5);
        EXPECT_EQ(service.components.empty(), frame.id == 0) << service.serviceId;
        for (const InputChannelRecord& component : service.components)
            EXPECT_NE(std::ranges::find(channels_, component), channels_.end());
    });
    StatusGenerator generator(1);
    generator.restart(*tables_, 0);
    DeviceStatusImage status;
    generator.write(status);
    for (std::size_t i = 0; i < status.frameCount; ++i) {
        const FrameStats& frame = status.frames[i];
        std::uint64_t bandwidth = 0;
        for (std::size_t k = 0; k < frame.subFrameCount; ++k)
            bandwidth += frame.subFrames[k].bandwidth;
        EXPECT_LE(bandwidth, frame.channelCapacity * 8u) << "frame " << frame.id;
    }
}

TEST_F(Sample, FramesAndTimeSlots) {
    std::set<int> ids;
    int slot = 0;
    for (const MultiplexTable* table : {&tables_->continuous, &tables_->shortTime}) {
        EXPECT_GE(table->frames.size(), 2u);
        for (const MultiplexFrame& frame : table->frames) {
            EXPECT_TRUE(ids.insert(frame.id).second);
            EXPECT_LT(frame.id, 40);
            EXPECT_FALSE(frame.timeSlots.empty());
            for (const std::uint8_t number : frame.timeSlots) EXPECT_EQ(number, slot++);
        }
    }
    EXPECT_LT(slot, 40);
    EXPECT_EQ(tables_->continuous.header[0], 2);
    EXPECT_EQ(tables_->shortTime.header[0], 4);
    const MultiplexFrame& control = tables_->continuous.frames[0];
    EXPECT_EQ(control.id, 0);
    ASSERT_EQ(control.services.size(), 8u);
    for (std::size_t i = 1; i < 8; ++i)
        EXPECT_EQ(control.services[i].serviceId, control.services[i - 1].serviceId + 1);
}

// What an edit of any continuous frame would rebuild is what is there.
TEST_F(Sample, ServiceFrequenciesFollowTheFrames) {
    const auto& entries = tables_->continuousServices.entries;
    std::size_t next = 0;
    for (const MultiplexFrame& frame : tables_->continuous.frames) {
        if (frame.id == 0) continue;
        for (const ServiceRecord& service : frame.services) {
            ASSERT_LT(next, entries.size());
            EXPECT_EQ(entries[next].serviceId, service.serviceId);
            EXPECT_EQ(entries[next++].channelNumber, tables_->continuous.header[1]);
        }
    }
    std::set<std::pair<int, int>> pairs;
    for (const ServiceFrequencyEntry& entry : entries)
        EXPECT_TRUE(pairs.emplace(entry.serviceId, entry.channelNumber).second);
    for (; next < entries.size(); ++next)
        EXPECT_NE(entries[next].channelNumber, tables_->continuous.header[1]);
    EXPECT_EQ(tables_->shortTimeServices.entries.size(), 2u);
}

TEST_F(Sample, NetworkAndConditionalAccess) {
    const NetworkInfo& network = tables_->network;
    EXPECT_EQ(network.name, gbk::networkName);
    EXPECT_LE(network.name.size(), 256u);
    EXPECT_EQ(network.ownFrequency.channelNumber, tables_->continuous.header[1]);
    std::set<int> frequencies = {network.ownFrequency.channelNumber};
    for (const FrequencyPoint& point : network.otherFrequencies)
        EXPECT_TRUE(frequencies.insert(point.channelNumber).second);
    std::set<std::uint32_t> numbers;
    for (const NeighbourNetwork& neighbour : network.neighbours)
        EXPECT_TRUE(numbers.insert(neighbour.networkNumber).second);
    EXPECT_EQ(numbers.size(), 2u);

    std::set<int> scrambled, protectedIds, dataUnits;
    forEachService([&](const MultiplexFrame&, const ServiceRecord& service) {
        if (service.serviceByte1 == 1) scrambled.insert(service.serviceId);
    });
    for (const InputChannelRecord& channel : channels_) dataUnits.insert(channel.dataUnitType);
    for (const CaSystemEntry& entry : tables_->caDescriptions.entries) {
        EXPECT_TRUE(protectedIds.insert(entry.serviceId).second);
        EXPECT_TRUE(dataUnits.contains(entry.emmDataUnitType));
        EXPECT_TRUE(dataUnits.contains(entry.ecmDataUnitType));
    }
    EXPECT_EQ(protectedIds, scrambled);
}

TEST_F(Sample, OutputIsWithinItsRanges) {
    const OutputParamBlock& output = tables_->outputParams;
    EXPECT_LT(output.pmsPid, 0x2000);
    EXPECT_GE(output.systemBitRate, 1'000'000u);
    EXPECT_LE(output.systemBitRate, 50'000'000u);
    EXPECT_EQ(output.alarmSwitches & 8, 8);
    EXPECT_LE(output.updateSequenceAdvance, 2);
    EXPECT_EQ(fieldText(tables_->params264.softwareVersion), "V2.0.6");
    EXPECT_EQ(fieldText(tables_->params264.hardwareVersion), "V1.3");
}

// Fetching and saving unchanged must not change a byte.
TEST_F(Sample, DecodingAndEncodingGivesTheSameBytes) {
    const auto sample = sampleConfiguration();
    const auto decoded = decodeConfiguration(*sample);
    auto again = std::make_unique<DeviceConfiguration>();
    encodeImage(*decoded, again->image);
    toNetworkOrder(again->image);
    encodeDescriptions(*decoded, again->descriptions);
    toNetworkOrder(again->descriptions);
    again->channels = sample->channels;
    EXPECT_TRUE(*again == *sample);
    EXPECT_EQ(sample->channels[0], channels_.size());
}

TEST_F(Sample, BytesOnTheWire) {
    const auto sample = sampleConfiguration();
    const auto* image = reinterpret_cast<const std::uint8_t*>(&sample->image);
    const Bytes frequency(image + 292, image + 300);
    EXPECT_EQ(frequency, Bytes({20, 0, 0, 0, 0x03, 0x28, 0xB7, 0x40})) << "530 MHz";
    EXPECT_EQ(image[640 + 3], 7) << "continuous frames";
    const Bytes systemRate(image + 629820 + 16, image + 629820 + 20);
    EXPECT_EQ(systemRate, Bytes({0x00, 0x7A, 0x12, 0x00})) << "8 Mbit/s";
    const auto* description = reinterpret_cast<const std::uint8_t*>(&sample->descriptions);
    const Bytes name(description + 8, description + 12);
    EXPECT_EQ(name, Bytes({0xD0, 0xC2, 0xCE, 0xC5})) << "GBK for news";
}

TEST(SampleState, CarriesItsOwnAddress) {
    const auto state = sampleState("192.168.100.200");
    EXPECT_EQ(fieldText(state->paramsSet.controlPort.address), "192.168.100.200");
    EXPECT_TRUE(state->set == state->applied);
}

}  // namespace
}  // namespace korvane::test
