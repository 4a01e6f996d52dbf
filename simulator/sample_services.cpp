#include "simulator/sample_services.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "simulator/gbk_texts.h"

namespace korvane {

namespace {

enum ServiceType : std::uint8_t {
    Media = 1,
    DraRadio = 2,
    Guide = 3,
    Entitlements = 4,
    DataBroadcast = 5
};

// One component: the n-th channel (from 0) of its type.
struct Feed {
    ChannelType type;
    std::size_t number;
};

struct ServicePlan {
    std::uint16_t id;
    ServiceType type;
    std::uint32_t bandwidth;  // bit/s
    bool scrambled;
    std::string_view name;  // GBK; the panel takes no descriptions of short-time services
    std::vector<Feed> feeds;
};

struct Coding {
    std::uint8_t rsRate, byteInterleaving, ldpcRate, modulation, scrambling;
};
// RS (240, 240), (240, 224), (240, 192) or (240, 176); LDPC 1/2 or 3/4; BPSK, QPSK or 16QAM.
constexpr Coding controlCoding = {0, 1, 0, 0, 0};
constexpr Coding usualCoding = {1, 1, 0, 1, 0};
constexpr Coding scrambledCoding = {1, 1, 0, 1, 3};
constexpr Coding denseCoding = {1, 2, 0, 2, 1};
constexpr Coding dataCoding = {2, 3, 1, 1, 2};
constexpr Coding shortDataCoding = {3, 1, 1, 1, 0};

struct FramePlan {
    std::uint8_t id;
    Coding coding;
    std::uint8_t timeSlotCount;
};

using enum ChannelType;

InputChannelRecord feedRecord(const FlatChannelList& channels, const Feed& feed) {
    std::size_t number = feed.number;
    for (const InputChannelRecord& channel : channels)
        if (channel.type == static_cast<std::uint8_t>(feed.type) && number-- == 0) return channel;
    return {};
}

ServiceDescription description(std::uint16_t serviceId, std::string_view name) {
    ServiceDescription text{};
    if (name.empty()) return text;
    text.serviceId = serviceId;
    text.language = {'z', 'h', 'o'};
    std::ranges::copy(name, text.name.begin());
    std::ranges::copy(gbk::provider, text.provider.begin());
    return text;
}

ServiceRecord makeService(const ServicePlan& plan, std::uint8_t subFrameNumber,
                          const FlatChannelList& channels) {
    constexpr std::uint8_t encapsulationMode1 = 1;
    ServiceRecord service;
    service.subFrameNumber = subFrameNumber;
    service.scrambled = plan.scrambled ? 1 : 0;
    service.serviceId = plan.id;
    service.description = description(plan.id, plan.name);
    service.type = plan.type;
    service.encapsulation = encapsulationMode1;
    service.bandwidth = plan.bandwidth;
    for (const Feed& feed : plan.feeds) service.components.append(feedRecord(channels, feed));
    return service;
}

// Fills the tables frame by frame; time slots run on from frame to frame.
class TableBuilder {
  public:
    TableBuilder(ConfigTables& tables, const FlatChannelList& channels)
        : tables_(tables), channels_(channels) {}

    void addFrame(TableKind kind, const FramePlan& plan, const std::vector<ServicePlan>& services) {
        MultiplexFrame frame;
        frame.id = plan.id;
        frame.rsRate = plan.coding.rsRate;
        frame.byteInterleaving = plan.coding.byteInterleaving;
        frame.ldpcRate = plan.coding.ldpcRate;
        frame.modulation = plan.coding.modulation;
        frame.scrambling = plan.coding.scrambling;
        frame.kind = kind;
        for (std::uint8_t i = 0; i < plan.timeSlotCount; ++i) frame.timeSlots.append(nextSlot_++);
        std::uint8_t subFrameNumber = 1;
        for (const ServicePlan& service : services)
            frame.services.append(makeService(service, subFrameNumber++, channels_));
        tables_.table(kind).frames.append(frame);
    }

  private:
    ConfigTables& tables_;
    const FlatChannelList& channels_;
    std::uint8_t nextSlot_ = 0;
};

// Frame 0 carries the control tables: eight services without inputs and with consecutive ids.
void addControlFrame(TableBuilder& builder) {
    std::vector<ServicePlan> services;
    for (std::uint16_t id = 1; id <= limits::services; ++id)
        services.push_back({id, Media, 8'000, false, {}, {}});
    builder.addFrame(TableKind::Continuous, {0, controlCoding, 1}, services);
}

void addContinuousFrames(TableBuilder& builder) {
    const auto add = [&builder](const FramePlan& plan, const std::vector<ServicePlan>& services) {
        builder.addFrame(TableKind::Continuous, plan, services);
    };
    add({1, usualCoding, 8}, {{101, Media, 500'000, false, gbk::news, {{Video, 0}, {Audio, 0}}},
                              {102, Media, 500'000, false, gbk::sports, {{Video, 1}, {Audio, 1}}}});
    add({2, denseCoding, 4},
        {{103, Media, 520'000, false, gbk::movies, {{Video, 2}, {Audio, 2}}},
         {104, Media, 480'000, false, gbk::children, {{Video, 3}, {Audio, 3}}}});
    add({3, usualCoding, 4},
        {{sampleMusicServiceId, DraRadio, 160'000, true, gbk::musicRadio, {{Dra, 0}, {Ecm, 1}}},
         {202, DraRadio, 160'000, false, gbk::trafficRadio, {{Dra, 1}}},
         {203, DraRadio, 160'000, false, gbk::newsRadio, {{Dra, 2}}}});
    add({4, dataCoding, 4}, {{301, DataBroadcast, 400'000, false, gbk::cityInfo, {{Data, 0}}},
                             {302, Guide, 128'000, false, gbk::guide, {{Esg, 0}}},
                             {303, Entitlements, 64'000, false, gbk::entitlements, {{Emm, 0}}}});
    const std::vector<Feed> cinema = {{Video, 4}, {Audio, 4}, {Ecm, 0}};
    add({5, usualCoding, 4}, {{sampleCinemaServiceId, Media, 480'000, true, gbk::cinema, cinema}});
    const std::vector<Feed> opera = {{Video, 5}, {Audio, 5}, {Audio, 6}};
    add({6, scrambledCoding, 4}, {{106, Media, 512'000, false, gbk::opera, opera}});
}

void addShortTimeFrames(TableBuilder& builder) {
    builder.addFrame(TableKind::ShortTime, {7, usualCoding, 4},
                     {{401, Media, 480'000, false, {}, {{Video, 6}, {Audio, 7}}}});
    builder.addFrame(TableKind::ShortTime, {8, shortDataCoding, 2},
                     {{402, DataBroadcast, 256'000, false, {}, {{Data, 1}}}});
}

}  // namespace

void addSampleTables(ConfigTables& tables, const FlatChannelList& channels) {
    constexpr std::uint8_t continuousTableId = 2, shortTimeTableId = 4;
    tables.continuous.header = {continuousTableId, sampleChannelNumber, 1};
    tables.shortTime.header = {shortTimeTableId, sampleChannelNumber, 1};
    TableBuilder builder(tables, channels);
    addControlFrame(builder);
    addContinuousFrames(builder);
    addShortTimeFrames(builder);
}

void addSampleServiceFrequencies(ConfigTables& tables) {
    constexpr std::uint8_t continuousTableId = 3, shortTimeTableId = 5;
    tables.continuousServices.header = {continuousTableId, 1, 0, 0};
    tables.continuousServices.value = 1;
    for (const MultiplexFrame& frame : tables.continuous.frames) {
        if (frame.id == 0) continue;
        for (const ServiceRecord& service : frame.services)
            tables.continuousServices.entries.append({service.serviceId, sampleChannelNumber, 0});
    }
    for (const std::uint16_t serviceId : {101, 102})
        tables.continuousServices.entries.append({serviceId, sampleOtherChannelNumber, 0});
    tables.shortTimeServices.header = {shortTimeTableId, 1, 0, 0};
    tables.shortTimeServices.value = 1;
    for (const MultiplexFrame& frame : tables.shortTime.frames)
        for (const ServiceRecord& service : frame.services)
            tables.shortTimeServices.entries.append({service.serviceId, sampleChannelNumber, 0});
}

}  // namespace korvane
