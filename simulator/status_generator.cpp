#include "simulator/status_generator.h"

#include <algorithm>
#include <cmath>

#include "model/capacity.h"

namespace korvane {

namespace {

constexpr std::uint64_t stepMs = 250;
constexpr std::uint64_t mostSteps = 400;  // at a time: after a long pause steps grow instead
constexpr double usualLevel = 0.9;
constexpr std::uint8_t dataInputAlarm = 3;
constexpr std::uint8_t esgService = 3;
constexpr std::size_t videoSection = 0, audioSection = 1, dataSection = 2;

std::size_t sectionOf(std::uint8_t channelType) {
    switch (static_cast<ChannelType>(channelType)) {
        case ChannelType::Video:
            return videoSection;
        case ChannelType::Audio:
        case ChannelType::Dra:
            return audioSection;
        default:
            return dataSection;
    }
}

// How much of a service one component needs, against the others.
double weightOf(std::uint8_t channelType) {
    switch (static_cast<ChannelType>(channelType)) {
        case ChannelType::Video:
            return 320;
        case ChannelType::Audio:
        case ChannelType::Dra:
            return 48;
        case ChannelType::Ecm:
            return 4;
        default:
            return 200;
    }
}

// A service's bandwidths may exceed the frame: then all of them are cut alike.
double shareOf(const MultiplexFrame& frame, std::uint32_t capacity) {
    double wanted = 0;
    for (const ServiceRecord& service : frame.services) wanted += service.bandwidth;
    return wanted > capacity * 8.0 ? capacity * 8.0 / wanted : 1.0;
}

// Counters of the device are 32 bits wide and wrap.
std::uint32_t counter(double value) {
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(value));
}

}  // namespace

void StatusGenerator::restart(const ConfigTables& tables, std::uint64_t nowMs) {
    bytesSent_ = 0;
    configure(tables, nowMs);
    for (Alarm& alarm : alarms_) {
        alarm.active = false;
        alarm.changesAtMs = nowMs + between(30'000, 120'000);
    }
}

void StatusGenerator::configure(const ConfigTables& tables, std::uint64_t nowMs) {
    frames_.clear();
    addTable(tables.continuous, TableKind::Continuous);
    addTable(tables.shortTime, TableKind::ShortTime);
    alarmSwitches_ = tables.outputParams.alarmSwitches;
    systemBitRate_ = tables.outputParams.systemBitRate;
    lastStepMs_ = nowMs;
    step(0);
}

void StatusGenerator::addTable(const MultiplexTable& table, TableKind kind) {
    for (const MultiplexFrame& source : table.frames) {
        if (frames_.size() == limits::frames) return;
        Frame frame{source.id, static_cast<std::uint32_t>(frameCapacity(source)), {}, {}};
        frame.timeSlots.assign(source.timeSlots.begin(), source.timeSlots.end());
        const double share = shareOf(source, frame.capacity);
        const bool isControlFrame = kind == TableKind::Continuous && source.id == 0;
        for (const ServiceRecord& service : source.services)
            frame.subFrames.push_back(makeSubFrame(service, share, isControlFrame));
        frames_.push_back(std::move(frame));
    }
}

StatusGenerator::SubFrame StatusGenerator::makeSubFrame(const ServiceRecord& service, double share,
                                                        bool isControlFrame) {
    constexpr std::array<double, 3> packetSizes = {1180, 372, 1316};
    SubFrame subFrame{service.subFrameNumber, service.serviceId, service.bandwidth, 0, {}, 0};
    const double bandwidth = service.bandwidth * share;
    const bool makesGuide = service.type == esgService && service.esgInternal == 1;
    if (service.components.empty()) {
        subFrame.internalBps = isControlFrame || makesGuide ? bandwidth * usualLevel : 0;
        return subFrame;
    }
    double weights = 0;
    for (const InputChannelRecord& component : service.components)
        weights += weightOf(component.type);
    for (const InputChannelRecord& component : service.components) {
        const std::size_t at = sectionOf(component.type);
        subFrame.sections[at].nominalBps += bandwidth * weightOf(component.type) / weights;
        subFrame.sections[at].packetSize = packetSizes[at];
        subFrame.sectionCount = std::max(subFrame.sectionCount, static_cast<std::uint8_t>(at + 1));
    }
    return subFrame;
}

void StatusGenerator::advance(std::uint64_t nowMs) {
    const std::uint64_t gap = nowMs > lastStepMs_ ? nowMs - lastStepMs_ : 0;
    const std::uint64_t stride = std::max(stepMs, gap / mostSteps);
    while (lastStepMs_ + stride <= nowMs) {
        lastStepMs_ += stride;
        updateAlarms(lastStepMs_);
        step(static_cast<double>(stride) / 1000);
    }
}

void StatusGenerator::step(double seconds) {
    for (Frame& frame : frames_)
        for (SubFrame& subFrame : frame.subFrames)
            for (Section& section : subFrame.sections) wander(section, seconds);
    bytesSent_ += streamRate() / 8 * seconds;
}

void StatusGenerator::wander(Section& section, double seconds) {
    const double noise = (static_cast<double>(between(0, 1000)) - 500) / 10'000;
    section.level += (usualLevel - section.level) * 0.2 + noise;
    section.level = std::clamp(section.level, 0.75, 0.98);
    section.rateBps = section.silent ? 0 : section.nominalBps * section.level;
    section.bytes += section.rateBps / 8 * seconds;
}

void StatusGenerator::updateAlarms(std::uint64_t nowMs) {
    for (Alarm& alarm : alarms_) {
        if (nowMs < alarm.changesAtMs) continue;
        alarm.active = !alarm.active;
        alarm.changesAtMs =
            nowMs + (alarm.active ? between(3'000, 9'000) : between(60'000, 300'000));
        if (alarm.bit == dataInputAlarm) silenceOneInput();
    }
}

// While the data input alarm is on, one input brings nothing.
void StatusGenerator::silenceOneInput() {
    std::vector<Section*> inputs;
    for (Frame& frame : frames_)
        for (SubFrame& subFrame : frame.subFrames)
            for (Section& section : subFrame.sections) {
                section.silent = false;
                if (section.nominalBps > 0) inputs.push_back(&section);
            }
    if (!inputs.empty() && alarms_[0].active)
        inputs[between(0, static_cast<std::uint32_t>(inputs.size()) - 1)]->silent = true;
}

std::uint8_t StatusGenerator::alarms() const {
    if (forcedAlarms_) return *forcedAlarms_;
    std::uint8_t bits = 0;
    for (const Alarm& alarm : alarms_)
        if (alarm.active) bits = static_cast<std::uint8_t>(bits | 1u << alarm.bit);
    return bits & alarmSwitches_;
}

std::uint32_t StatusGenerator::effectiveLength(const SubFrame& subFrame) {
    double bps = subFrame.internalBps;
    for (const Section& section : subFrame.sections) bps += section.rateBps;
    return static_cast<std::uint32_t>(bps / 8);
}

std::uint32_t StatusGenerator::effectiveData(const Frame& frame) {
    std::uint32_t sum = 0;
    for (const SubFrame& subFrame : frame.subFrames) sum += effectiveLength(subFrame);
    return sum;
}

double StatusGenerator::streamRate() const {
    double bytes = 0;
    for (const Frame& frame : frames_) bytes += effectiveData(frame);
    return bytes * 8;
}

void StatusGenerator::write(DeviceStatusImage& image) const {
    image = {};
    image.bytesSent = counter(bytesSent_);
    image.streamRate = counter(streamRate());
    image.systemRate = static_cast<std::uint16_t>(std::min(systemBitRate_ / 8000, 0xFFFFu));
    image.alarms = alarms();
    image.frameCount = static_cast<std::uint8_t>(frames_.size());
    for (std::size_t i = 0; i < frames_.size(); ++i) writeFrame(frames_[i], image.frames[i]);
}

void StatusGenerator::writeFrame(const Frame& frame, FrameStats& stats) const {
    stats.channelCapacity = frame.capacity;
    stats.effectiveData = effectiveData(frame);
    stats.id = frame.id;
    stats.timeSlotCount = static_cast<std::uint8_t>(frame.timeSlots.size());
    std::ranges::copy(frame.timeSlots, stats.timeSlots.begin());
    stats.subFrameCount = static_cast<std::uint8_t>(frame.subFrames.size());
    for (std::size_t i = 0; i < frame.subFrames.size(); ++i) {
        const SubFrame& source = frame.subFrames[i];
        SubFrameStats& target = stats.subFrames[i];
        target.id = source.number;
        target.serviceId = source.serviceId;
        target.effectiveLength = effectiveLength(source);
        target.bandwidth = source.bandwidth;
        target.segmentCount = source.sectionCount;
        for (std::size_t k = 0; k < source.sectionCount; ++k) {
            const Section& section = source.sections[k];
            target.segments[k] = {counter(section.bytes / section.packetSize),
                                  counter(section.bytes),
                                  static_cast<std::uint32_t>(section.rateBps / 1000), 0};
        }
    }
}

// Every value as likely as any other, near enough; standard distributions differ between systems.
std::uint32_t StatusGenerator::between(std::uint32_t least, std::uint32_t most) {
    return least + static_cast<std::uint32_t>(random_() % (most - least + 1));
}

}  // namespace korvane
