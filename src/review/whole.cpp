#include "review/whole.h"

#include "model/channel_text.h"

namespace korvane::review {
namespace {

std::unique_ptr<const ConfigTables> tablesOf(const Configuration& content) {
    auto tables = std::make_unique<ConfigTables>();
    decodeImage(content.image, *tables);
    decodeDescriptions(content.descriptions, *tables);
    return tables;
}

const MultiplexBlock& blockOf(TableKind kind, const ConfigImage& image) {
    return kind == TableKind::ShortTime ? image.shortTime : image.continuous;
}

std::string numbered(const char* noun, std::uint32_t number) {
    return std::string(noun) + ' ' + std::to_string(number);
}

}  // namespace

// Each list holds on to elements of the one before it, which is complete by then.
Whole::Whole(const Configuration& configuration)
    : content(configuration), tables(tablesOf(configuration)) {
    for (const TableKind kind : {TableKind::Continuous, TableKind::ShortTime}) {
        addFrames(kind, blockOf(kind, content.image));
        addPairs(kind);
    }
    for (const FrameAt& at : frames)
        addServices(at, blockOf(at.kind, content.image).frames[at.index]);
    for (const ServiceAt& at : services)
        for (const InputChannelRecord& channel : at.service.components)
            components.push_back({at, channel});
}

void Whole::addFrames(TableKind kind, const MultiplexBlock& block) {
    const auto& list = tables->table(kind).frames;
    for (std::size_t i = 0; i < list.size(); ++i)
        frames.push_back({kind, i, list[i], block.frames[i].head});
}

void Whole::addServices(const FrameAt& at, const FrameSlot& slot) {
    const auto& list = at.frame.services;
    for (std::size_t i = 0; i < list.size(); ++i)
        services.push_back({at, list[i], slot.services[i].head});
}

void Whole::addPairs(TableKind kind) {
    for (const ServiceFrequencyEntry& entry : tables->serviceTable(kind).entries)
        pairs.push_back({kind, entry});
}

std::string placeOf(const FrameAt& frame) {
    const bool isShort = frame.kind == TableKind::ShortTime;
    return numbered(isShort ? "short-time frame" : "frame", frame.frame.id);
}

std::string placeOf(const ServiceAt& service) {
    return placeOf(service.at) + numbered(", service", service.service.serviceId);
}

std::string placeOf(const ComponentAt& component) {
    return placeOf(component.at) + ", component " + channelTerm(component.channel);
}

std::string placeOf(const PairAt& pair) {
    const bool isShort = pair.kind == TableKind::ShortTime;
    return std::string(isShort ? "short-time" : "continuous") + " service table, pair (" +
           std::to_string(pair.entry.serviceId) + ", " + std::to_string(pair.entry.channelNumber) +
           ')';
}

std::string placeOf(const InputChannelRecord& channel) {
    return numbered("input channel", channel.channelId) + " (" + channelTerm(channel) + ')';
}

std::string placeOf(const FrequencyPoint& point) {
    return numbered("other frequency point", point.channelNumber);
}

std::string placeOf(const NeighbourNetwork& network) {
    return numbered("other network", network.networkNumber);
}

std::string placeOf(const CaSystemEntry& entry) {
    return numbered("CA system", entry.caSystemId);
}

std::string placeOf(const NetworkBlock&) {
    return "network";
}

std::string placeOf(const OutputParamBlock&) {
    return "output parameters";
}

std::string placeOf(const DeviceParamBlock&) {
    return "device parameters";
}

std::string channelTerm(const InputChannelRecord& channel) {
    const bool hasTerm = channel.type < channelTypeTerms.size();
    return (hasTerm ? std::string(channelTypeTerms[channel.type])
                    : numbered("type", channel.type)) +
           ' ' + receiveAddress(channel);
}

}  // namespace korvane::review
