#include <algorithm>
#include <cstring>

#include "model/config_model.h"
#include "model/edit_result.h"

// The editors' operations on channels, network, service/frequency tables and opaque blocks. Those
// on frames and services are in frame_store.cpp.

namespace korvane {

using namespace edit_result;

namespace {

int resultOf(bool changed) {
    return changed ? done : refused;
}

template <class List>
int getAt(const List& list, std::size_t index, typename List::value_type& out) {
    if (index >= list.size()) return refused;
    out = list[index];
    return done;
}

template <class List>
int setAt(List& list, std::size_t index, const typename List::value_type& value) {
    if (index >= list.size()) return refused;
    list[index] = value;
    return done;
}

bool usesStream(const MultiplexFrame& frame, const InputChannelRecord& channel) {
    return std::any_of(
        frame.services.begin(), frame.services.end(), [&channel](const ServiceRecord& service) {
            return std::any_of(
                service.components.begin(), service.components.end(),
                [&channel](const InputChannelRecord& c) { return sameStream(c, channel); });
        });
}

}  // namespace

int ConfigModel::selectTableSet(std::uint32_t index) {
    tableSet_ = static_cast<std::uint8_t>(index);
    return done;
}

int ConfigModel::getHeader(std::array<std::uint8_t, 12>& bytes, std::uint8_t& length) const {
    std::copy(tables_.header.begin(), tables_.header.end(), bytes.begin());
    std::memcpy(&bytes[8], &tables_.headerValue, sizeof tables_.headerValue);
    std::copy(tables_.header10.begin(), tables_.header10.end(), bytes.begin() + 10);
    length = tables_.headerLength;
    return done;
}

int ConfigModel::setHeader(const std::array<std::uint8_t, 12>& bytes, std::uint8_t length) {
    std::copy_n(bytes.begin(), tables_.header.size(), tables_.header.begin());
    std::memcpy(&tables_.headerValue, &bytes[8], sizeof tables_.headerValue);
    std::copy_n(bytes.begin() + 10, tables_.header10.size(), tables_.header10.begin());
    tables_.headerLength = length;
    return done;
}

int ConfigModel::getChannels(std::size_t type, FlatChannelList& list) const {
    if (type >= channels_.size()) return refused;
    list = channels_[type];
    return done;
}

// One more than any id issued before, as far as the last one issued and the channels at hand tell.
std::uint32_t ConfigModel::nextChannelId() const {
    constexpr std::uint32_t unset = 0xF0000000;  // from here on the field was never written
    const std::uint32_t last = tables_.outputParams.lastChannelId;
    std::uint32_t largest = last >= unset ? 0 : last;
    for (const InputChannelRecord& record : flatChannels_)
        largest = std::max(largest, record.channelId);
    // Only a wrapped number can meet one in use.
    std::uint32_t id = largest + 1;
    const auto inUse = [this, &id] {
        return std::any_of(flatChannels_.begin(), flatChannels_.end(),
                           [id](const InputChannelRecord& r) { return r.channelId == id; });
    };
    while (inUse()) ++id;
    return id;
}

int ConfigModel::addChannel(InputChannelRecord record, std::uint32_t position) {
    if (flatChannels_.full() || record.type >= channels_.size()) return refused;
    FlatChannelList& list = channels_[record.type];
    record.channelId = nextChannelId();
    if (!list.insert(position == atEnd ? list.size() : position, record)) return refused;
    tables_.outputParams.lastChannelId = record.channelId;
    rebuildFlatChannels();
    return done;
}

int ConfigModel::removeChannel(std::size_t type, std::size_t index) {
    if (type >= channels_.size() || !channels_[type].erase(index)) return refused;
    rebuildFlatChannels();
    return done;
}

int ConfigModel::clearChannels(std::size_t type) {
    if (type >= channels_.size()) return refused;
    channels_[type].clear();
    rebuildFlatChannels();
    return done;
}

int ConfigModel::updateChannel(std::size_t index, const InputChannelRecord& record) {
    if (record.type >= channels_.size() || setAt(channels_[record.type], index, record) != done)
        return refused;
    rebuildFlatChannels();
    return done;
}

FlatChannelList ConfigModel::candidateChannels(std::size_t type, const FramePlace& place) const {
    FlatChannelList candidates;
    if (type >= channels_.size()) return candidates;
    for (const InputChannelRecord& channel : channels_[type])
        if (!usedElsewhere(channel, place)) candidates.append(channel);
    return candidates;
}

bool ConfigModel::usedElsewhere(const InputChannelRecord& channel, const FramePlace& place) const {
    for (const TableKind kind : {TableKind::Continuous, TableKind::ShortTime}) {
        const auto& frames = tables_.table(kind).frames;
        for (std::size_t i = 0; i < frames.size(); ++i)
            if (FramePlace{kind, static_cast<int>(i)} != place && usesStream(frames[i], channel))
                return true;
    }
    return false;
}

int ConfigModel::getNetworkInfo(NetworkInfo& info) const {
    info = tables_.network;
    return done;
}

int ConfigModel::setNetworkInfo(const NetworkInfo& info) {
    if (info.name.size() > limits::networkName) return refused;
    tables_.network = info;
    rebuildServiceFrequencies();
    return done;
}

int ConfigModel::getFrequencyPoint(std::size_t index, FrequencyPoint& point) const {
    return getAt(tables_.network.otherFrequencies, index, point);
}

int ConfigModel::setFrequencyPoint(std::size_t index, const FrequencyPoint& point) {
    return setAt(tables_.network.otherFrequencies, index, point);
}

int ConfigModel::addFrequencyPoint(const FrequencyPoint& point) {
    return resultOf(tables_.network.otherFrequencies.append(point));
}

int ConfigModel::removeFrequencyPoint(std::size_t index) {
    FrequencyPoint gone{};
    if (getFrequencyPoint(index, gone) != done) return refused;
    tables_.network.otherFrequencies.erase(index);
    auto& entries = tables_.continuousServices.entries;
    for (std::size_t i = entries.size(); i-- > 0;)
        if (entries[i].channelNumber == gone.channelNumber) entries.erase(i);
    return done;
}

int ConfigModel::getNeighbourNetwork(std::size_t index, NeighbourNetwork& network) const {
    return getAt(tables_.network.neighbours, index, network);
}

int ConfigModel::setNeighbourNetwork(std::size_t index, const NeighbourNetwork& network) {
    return setAt(tables_.network.neighbours, index, network);
}

int ConfigModel::addNeighbourNetwork(const NeighbourNetwork& network) {
    return resultOf(tables_.network.neighbours.append(network));
}

int ConfigModel::removeNeighbourNetwork(std::size_t index) {
    return resultOf(tables_.network.neighbours.erase(index));
}

ServiceFrequencyTable& ConfigModel::serviceTable(TableKind kind) {
    return tables_.serviceTable(kind);
}

const ServiceFrequencyTable& ConfigModel::serviceTable(TableKind kind) const {
    return tables_.serviceTable(kind);
}

int ConfigModel::getServiceFrequency(TableKind kind, std::size_t index,
                                     ServiceFrequencyEntry& entry) const {
    return getAt(serviceTable(kind).entries, index, entry);
}

int ConfigModel::setServiceFrequency(TableKind kind, std::size_t index,
                                     const ServiceFrequencyEntry& entry) {
    return setAt(serviceTable(kind).entries, index, entry);
}

int ConfigModel::addServiceFrequency(TableKind kind, const ServiceFrequencyEntry& entry,
                                     int position) {
    auto& entries = serviceTable(kind).entries;
    const std::size_t index = position == -1 ? entries.size() : static_cast<std::size_t>(position);
    return resultOf(entries.insert(index, entry));
}

int ConfigModel::removeServiceFrequency(TableKind kind, std::size_t index) {
    return resultOf(serviceTable(kind).entries.erase(index));
}

int ConfigModel::setServiceFrequencyTableId(TableKind kind, std::uint8_t id) {
    serviceTable(kind).header[0] = id;
    return done;
}

int ConfigModel::get264Block(ParamBlock264& block) const {
    block = tables_.params264;
    return done;
}

int ConfigModel::set264Block(const ParamBlock264& block) {
    tables_.params264 = block;
    return done;
}

int ConfigModel::getCaTable(CaDescriptionTable& table) const {
    table = tables_.caDescriptions;
    return done;
}

int ConfigModel::setCaTable(const CaDescriptionTable& table) {
    tables_.caDescriptions = table;
    return done;
}

int ConfigModel::appendCaSystem(const CaSystemEntry& entry) {
    return resultOf(tables_.caDescriptions.entries.append(entry));
}

}  // namespace korvane
