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

struct FramePlan {
    std::uint8_t id, rsRate, byteInterleaving, ldpcRate, modulation, scrambling;
    std::uint8_t timeSlotCount;
    std::vector<ServicePlan> services;
};

constexpr std::uint8_t bpsk = 0, qpsk = 1, qam16 = 2;
constexpr std::uint8_t rate1of2 = 0, rate3of4 = 1;
constexpr std::uint8_t rs240 = 0, rs224 = 1, rs192 = 2, rs176 = 3;

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
    service.serviceByte1 = plan.scrambled ? 1 : 0;
    service.serviceId = plan.id;
    service.description = description(plan.id, plan.name);
    service.parameters = {plan.type, encapsulationMode1, 0};
    service.bandwidth = plan.bandwidth;
    for (const Feed& feed : plan.feeds) service.components.append(feedRecord(channels, feed));
    return service;
}

// Takes the time slots from `nextSlot` on.
void addFrame(MultiplexTable& table, TableKind kind, const FramePlan& plan, std::uint8_t& nextSlot,
              const FlatChannelList& channels) {
    MultiplexFrame frame;
    frame.id = plan.id;
    frame.rsRate = plan.rsRate;
    frame.byteInterleaving = plan.byteInterleaving;
    frame.ldpcRate = plan.ldpcRate;
    frame.modulation = plan.modulation;
    frame.scrambling = plan.scrambling;
    frame.kind = kind;
    for (std::uint8_t i = 0; i < plan.timeSlotCount; ++i) frame.timeSlots.append(nextSlot++);
    std::uint8_t subFrameNumber = 1;
    for (const ServicePlan& service : plan.services)
        frame.services.append(makeService(service, subFrameNumber++, channels));
    table.frames.append(frame);
}

// Frame 0 carries the control tables: eight services without inputs and with consecutive ids.
void addControlFrame(MultiplexTable& table, std::uint8_t& nextSlot) {
    constexpr std::uint32_t bandwidth = 8'000;
    addFrame(table, TableKind::Continuous, {0, rs240, 1, rate1of2, bpsk, 0, 1, {}}, nextSlot, {});
    for (std::uint8_t number = 1; number <= limits::services; ++number)
        table.frames[0].services.append(
            makeService({number, Media, bandwidth, false, {}, {}}, number, {}));
}

void addContinuousFrames(MultiplexTable& table, std::uint8_t& nextSlot,
                         const FlatChannelList& channels) {
    const std::vector<FramePlan> plans = {
        {1,
         rs224,
         1,
         rate1of2,
         qpsk,
         0,
         8,
         {{101, Media, 500'000, false, gbk::news, {{Video, 0}, {Audio, 0}}},
          {102, Media, 500'000, false, gbk::sports, {{Video, 1}, {Audio, 1}}}}},
        {2,
         rs224,
         2,
         rate1of2,
         qam16,
         1,
         4,
         {{103, Media, 520'000, false, gbk::movies, {{Video, 2}, {Audio, 2}}},
          {104, Media, 480'000, false, gbk::children, {{Video, 3}, {Audio, 3}}}}},
        {3,
         rs224,
         1,
         rate1of2,
         qpsk,
         0,
         4,
         {{sampleMusicServiceId, DraRadio, 160'000, true, gbk::musicRadio, {{Dra, 0}, {Ecm, 1}}},
          {202, DraRadio, 160'000, false, gbk::trafficRadio, {{Dra, 1}}},
          {203, DraRadio, 160'000, false, gbk::newsRadio, {{Dra, 2}}}}},
        {4,
         rs192,
         3,
         rate3of4,
         qpsk,
         2,
         4,
         {{301, DataBroadcast, 400'000, false, gbk::cityInfo, {{Data, 0}}},
          {302, Guide, 128'000, false, gbk::guide, {{Esg, 0}}},
          {303, Entitlements, 64'000, false, gbk::entitlements, {{Emm, 0}}}}},
        {5,
         rs224,
         1,
         rate1of2,
         qpsk,
         0,
         4,
         {{sampleCinemaServiceId,
           Media,
           480'000,
           true,
           gbk::cinema,
           {{Video, 4}, {Audio, 4}, {Ecm, 0}}}}},
        {6,
         rs224,
         1,
         rate1of2,
         qpsk,
         3,
         4,
         {{106, Media, 512'000, false, gbk::opera, {{Video, 5}, {Audio, 5}, {Audio, 6}}}}},
    };
    for (const FramePlan& plan : plans)
        addFrame(table, TableKind::Continuous, plan, nextSlot, channels);
}

void addShortTimeFrames(MultiplexTable& table, std::uint8_t& nextSlot,
                        const FlatChannelList& channels) {
    const std::vector<FramePlan> plans = {
        {7,
         rs224,
         1,
         rate1of2,
         qpsk,
         0,
         4,
         {{401, Media, 480'000, false, {}, {{Video, 6}, {Audio, 7}}}}},
        {8,
         rs176,
         1,
         rate3of4,
         qpsk,
         0,
         2,
         {{402, DataBroadcast, 256'000, false, {}, {{Data, 1}}}}},
    };
    for (const FramePlan& plan : plans)
        addFrame(table, TableKind::ShortTime, plan, nextSlot, channels);
}

}  // namespace

void addSampleTables(ConfigTables& tables, const FlatChannelList& channels) {
    constexpr std::uint8_t continuousTableId = 2, shortTimeTableId = 4;
    std::uint8_t nextSlot = 0;
    tables.continuous.header = {continuousTableId, sampleChannelNumber, 1};
    addControlFrame(tables.continuous, nextSlot);
    addContinuousFrames(tables.continuous, nextSlot, channels);
    tables.shortTime.header = {shortTimeTableId, sampleChannelNumber, 1};
    addShortTimeFrames(tables.shortTime, nextSlot, channels);
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
