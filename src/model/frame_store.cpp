#include <algorithm>

#include "log/log.h"
#include "model/config_model.h"
#include "model/edit_result.h"

// The operations on frames and services, and what follows from them: the numbers of the continuous
// frames' time slots and the CSCT entries of the current channel.

namespace korvane {

using namespace edit_result;

namespace {

constexpr int newFrame = -1;  // in the place of an index

template <class List>
bool names(const List& list, int index) {
    return index >= 0 && static_cast<std::size_t>(index) < list.size();
}

// Services of the control tables' own frame are not announced.
std::size_t announcedServices(const MultiplexFrame& frame) {
    return frame.id == 0 ? 0 : frame.services.size();
}

}  // namespace

// What frames need of the limits that all continuous frames share.
struct ConfigModel::Demand {
    std::size_t timeSlots = 0;
    std::size_t services = 0;  // CSCT entries of the current channel

    static Demand of(const MultiplexFrame& frame) {
        return {frame.timeSlots.size(), announcedServices(frame)};
    }
};

ConfigModel::Demand ConfigModel::demandOfContinuous() const {
    Demand sum;
    for (const MultiplexFrame& frame : tables_.continuous.frames) {
        sum.timeSlots += frame.timeSlots.size();
        sum.services += announcedServices(frame);
    }
    return sum;
}

// What an operation answers to a change that would bring the continuous table over a shared limit,
// or further over one that a configuration from elsewhere already exceeds: such a one can be shrunk
// step by step.
int ConfigModel::exceeded(const Demand& gone, const Demand& added) const {
    const Demand now = demandOfContinuous();
    const std::uint8_t channel = tables_.continuous.header[1];
    const auto& entries = tables_.continuousServices.entries;
    const auto foreign = static_cast<std::size_t>(std::count_if(
        entries.begin(), entries.end(),
        [channel](const ServiceFrequencyEntry& entry) { return entry.channelNumber != channel; }));
    const auto grows = [](std::size_t before, std::size_t minus, std::size_t plus,
                          std::size_t limit) {
        return plus > minus && before - minus + plus > limit;
    };
    if (grows(now.timeSlots, gone.timeSlots, added.timeSlots, limits::timeSlots)) return refused;
    const std::size_t room = limits::serviceFrequencies - foreign;
    return grows(now.services, gone.services, added.services, room) ? csctFull : done;
}

void ConfigModel::renumberTimeSlots() {
    std::uint8_t next = 0;
    for (MultiplexFrame& frame : tables_.continuous.frames)
        for (std::uint8_t& slot : frame.timeSlots) slot = next++;
}

// Entries of other channels stay, in their order, behind those of the current one. What was loaded,
// or the own channel's number, may leave too little room for them.
void ConfigModel::rebuildServiceFrequencies() {
    const std::uint8_t channel = tables_.continuous.header[1];
    auto& entries = tables_.continuousServices.entries;
    const auto before = entries;
    std::size_t cut = 0;
    const auto append = [&entries, &cut](const ServiceFrequencyEntry& entry) {
        if (!entries.append(entry)) ++cut;
    };
    entries.clear();
    for (const MultiplexFrame& frame : tables_.continuous.frames)
        if (frame.id != 0)
            for (const ServiceRecord& service : frame.services)
                append({service.serviceId, channel, 0});
    for (const ServiceFrequencyEntry& entry : before)
        if (entry.channelNumber != channel) append(entry);
    if (cut != 0) logLine(logWarning, "持续业务配置表已满, 末尾%zu项被舍去", cut);
}

void ConfigModel::afterFrameChange(TableKind kind) {
    if (kind != TableKind::Continuous) return;
    renumberTimeSlots();
    rebuildServiceFrequencies();
}

int ConfigModel::setMultiplexHeader(const std::array<std::uint8_t, 3>& header) {
    constexpr std::uint8_t shortTimeTableId = 4;
    const TableKind kind =
        header[0] == shortTimeTableId ? TableKind::ShortTime : TableKind::Continuous;
    tables_.table(kind).header = header;
    return done;
}

int ConfigModel::getFrame(TableKind kind, int index, MultiplexFrame& frame) const {
    const auto& frames = tables_.table(kind).frames;
    if (!names(frames, index)) return refused;
    frame = frames[static_cast<std::size_t>(index)];
    return done;
}

int ConfigModel::addFrame(TableKind kind, const MultiplexFrame& frame, int position) {
    auto& frames = tables_.table(kind).frames;
    if (const int answer = checkFrame(kind, newFrame, frame)) return answer;
    const std::size_t index =
        names(frames, position) ? static_cast<std::size_t>(position) : frames.size();
    frames.insert(index, frame);
    frames[index].kind = kind;
    afterFrameChange(kind);
    return done;
}

int ConfigModel::updateFrame(TableKind kind, int index, const MultiplexFrame& frame) {
    if (index == newFrame) return refused;
    if (const int answer = checkFrame(kind, index, frame)) return answer;
    MultiplexFrame& stored = tables_.table(kind).frames[static_cast<std::size_t>(index)];
    stored = frame;
    stored.kind = kind;
    afterFrameChange(kind);
    return done;
}

int ConfigModel::checkFrame(TableKind kind, int index, const MultiplexFrame& frame) const {
    const auto& frames = tables_.table(kind).frames;
    const bool isNew = index == newFrame;
    if (isNew ? frames.full() : !names(frames, index)) return refused;
    if (kind != TableKind::Continuous) return done;
    return exceeded(isNew ? Demand{} : Demand::of(frames[static_cast<std::size_t>(index)]),
                    Demand::of(frame));
}

int ConfigModel::removeFrame(TableKind kind, int index) {
    auto& frames = tables_.table(kind).frames;
    if (!names(frames, index)) return refused;
    frames.erase(static_cast<std::size_t>(index));
    afterFrameChange(kind);
    return done;
}

std::uint8_t ConfigModel::highestFrameId(TableKind kind) const {
    std::uint8_t highest = 0;
    for (const MultiplexFrame& frame : tables_.table(kind).frames)
        highest = std::max(highest, frame.id);
    return highest;
}

int ConfigModel::setTimeSlot(TableKind kind, int frame, std::size_t index, std::uint8_t slot) {
    auto& frames = tables_.table(kind).frames;
    if (!names(frames, frame)) return refused;
    TimeSlotList& slots = frames[static_cast<std::size_t>(frame)].timeSlots;
    if (index >= slots.size()) return refused;
    slots[index] = slot;
    return done;
}

int ConfigModel::removeTimeSlot(TableKind kind, int frame, std::size_t index) {
    auto& frames = tables_.table(kind).frames;
    if (!names(frames, frame)) return refused;
    return frames[static_cast<std::size_t>(frame)].timeSlots.erase(index) ? done : refused;
}

TimeSlotList ConfigModel::allocateTimeSlots(TableKind kind, int frame, std::size_t count) const {
    const auto& frames = tables_.table(kind).frames;
    const std::size_t before =
        names(frames, frame) ? static_cast<std::size_t>(frame) : frames.size();
    std::size_t next = 0;
    for (std::size_t i = 0; i < before; ++i) next += frames[i].timeSlots.size();
    TimeSlotList slots;
    for (std::size_t i = 0; i < count && slots.append(static_cast<std::uint8_t>(next + i)); ++i) {
    }
    return slots;
}

int ConfigModel::addService(TableKind kind, int frame, const ServiceRecord& service) {
    auto& frames = tables_.table(kind).frames;
    if (!names(frames, frame)) return refused;
    MultiplexFrame& stored = frames[static_cast<std::size_t>(frame)];
    if (stored.services.full()) return refused;
    const Demand added{0, stored.id == 0 ? 0u : 1u};
    if (kind == TableKind::Continuous)
        if (const int answer = exceeded({}, added)) return answer;
    stored.services.append(service);
    afterFrameChange(kind);
    return done;
}

int ConfigModel::updateService(TableKind kind, int frame, int index, const ServiceRecord& service) {
    auto& frames = tables_.table(kind).frames;
    if (!names(frames, frame)) return refused;
    auto& services = frames[static_cast<std::size_t>(frame)].services;
    if (!names(services, index)) return refused;
    services[static_cast<std::size_t>(index)] = service;
    afterFrameChange(kind);
    return done;
}

int ConfigModel::removeService(TableKind kind, int frame, int index) {
    auto& frames = tables_.table(kind).frames;
    if (!names(frames, frame)) return refused;
    auto& services = frames[static_cast<std::size_t>(frame)].services;
    if (!names(services, index)) return refused;
    services.erase(static_cast<std::size_t>(index));
    afterFrameChange(kind);
    return done;
}

std::optional<ConfigModel::ServicePlace> ConfigModel::findService(std::uint16_t serviceId) const {
    for (const TableKind kind : {TableKind::Continuous, TableKind::ShortTime}) {
        const auto& frames = tables_.table(kind).frames;
        for (std::size_t f = 0; f < frames.size(); ++f)
            for (std::size_t s = 0; s < frames[f].services.size(); ++s)
                if (frames[f].services[s].serviceId == serviceId) return ServicePlace{kind, f, s};
    }
    return std::nullopt;
}

}  // namespace korvane
