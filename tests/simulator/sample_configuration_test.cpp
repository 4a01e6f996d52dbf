#include "simulator/sample_configuration.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

#include "model/capacity.h"
#include "model/config_checks.h"
#include "support/bytes.h"
#include "support/configurations.h"
#include "support/scripted_prompts.h"

namespace korvane::test {
namespace {

class Sample : public testing::Test {
  protected:
    // Enters a table's frames as an operator would.
    void enterFrames(TableKind kind) {
        for (const MultiplexFrame& frame : sample_->table(kind).frames) {
            EXPECT_EQ(checks_.checkFrameId(frame.id), 0);
            EXPECT_EQ(checks_.checkTimeSlotCount(frame.timeSlots.size()), 0);
            EXPECT_EQ(model_->addFrame(kind, frame), 0);
            std::uint32_t total = 0;
            EXPECT_FALSE(totalBandwidthOverflows(frame, total)) << total;
            for (const ServiceRecord& service : frame.services) checkService(frame, service);
        }
    }
    void checkService(const MultiplexFrame& frame, const ServiceRecord& service) {
        EXPECT_TRUE(ids_.insert(service.serviceId).second) << service.serviceId;
        if (service.scrambled == 1) scrambled_.insert(service.serviceId);
        EXPECT_GE(service.type, 1);
        EXPECT_LE(service.type, 5);
        EXPECT_EQ(service.components.empty(), frame.id == 0) << service.serviceId;
        for (const InputChannelRecord& component : service.components)
            EXPECT_NE(std::ranges::find(channels_, component), channels_.end());
    }

    std::unique_ptr<ConfigTables> sample_ = sampleTables();
    FlatChannelList channels_ = sampleChannels();
    std::unique_ptr<ConfigModel> model_ = std::make_unique<ConfigModel>();
    ScriptedPrompts prompts_;
    ConfigChecks checks_{*model_, prompts_};
    std::set<std::uint16_t> ids_, scrambled_;
};

TEST_F(Sample, ChannelsCanBeEnteredInTheEditors) {
    std::set<std::uint8_t> types;
    for (const InputChannelRecord& channel : channels_) {
        EXPECT_EQ(checks_.checkInputChannelAddress(channel.address, channel.port, true), 0);
        EXPECT_EQ(checks_.checkDataUnitType(channel.dataUnitType) == 0,
                  channel.type == 4 || channel.type == 5);
        EXPECT_LE(channel.payloadType, 127);
        types.insert(channel.type);
        EXPECT_EQ(model_->addChannel(channel, ConfigModel::atEnd), 0);
    }
    EXPECT_EQ(types.size(), limits::channelTypes) << "there is one of each";
    EXPECT_TRUE(std::ranges::equal(model_->flatChannels(), channels_));
    EXPECT_EQ(sample_->outputParams.lastChannelId, channels_.size());
}

// An operator who enters all of it gets the sample, with what the model renumbers and rebuilds.
TEST_F(Sample, TablesCanBeEnteredInTheEditors) {
    test::editTables(*model_, [this](ConfigTables& tables) {
        tables = *sample_;
        tables.continuous.frames.clear();
        tables.shortTime.frames.clear();
        tables.continuousServices.entries.clear();
    });
    const ConfigTables& tables = model_->tables();
    enterFrames(TableKind::Continuous);
    enterFrames(TableKind::ShortTime);
    const auto& entries = sample_->continuousServices.entries;
    for (std::size_t i = tables.continuousServices.entries.size(); i < entries.size(); ++i)
        model_->addServiceFrequency(TableKind::Continuous, entries[i]);
    for (const CaSystemEntry& entry : sample_->caDescriptions.entries) {
        EXPECT_EQ(scrambled_.erase(entry.serviceId), 1u);
        for (const std::uint8_t type : {entry.emmDataUnitType, entry.ecmDataUnitType})
            EXPECT_NE(std::ranges::find(channels_, type, &InputChannelRecord::dataUnitType),
                      channels_.end());
    }
    EXPECT_TRUE(scrambled_.empty()) << "each scrambled service has its entry";
    EXPECT_TRUE(tables == *sample_);
    EXPECT_TRUE(prompts_.log.empty()) << prompts_.log[0];
}

TEST_F(Sample, TravelsInNetworkOrder) {
    const auto state = sampleState("192.168.100.200");
    EXPECT_TRUE(state->set == state->applied);
    EXPECT_TRUE(*decodeConfiguration(state->set) == *sample_);
    EXPECT_EQ(bytesAt(state->set.image, 292, 8), "14 00 00 00 03 28 B7 40") << "530 MHz";
    EXPECT_EQ(bytesAt(state->set.descriptions, 8, 4), "D0 C2 CE C5") << "GBK for news";
    EXPECT_EQ(bytesAt(state->set.channels, 9, 2), "13 88") << "port 5000";
    EXPECT_EQ(bytesAt(state->paramsApplied, 12, 4), "32 30 30 00") << "its own address";
}

}  // namespace
}  // namespace korvane::test
