#include "review/summary.h"

#include <algorithm>

#include "model/capacity.h"
#include "model/channel_text.h"
#include "model/frame_text.h"
#include "model/frequency_text.h"
#include "review/whole.h"
#include "review/words.h"
#include "text/gbk.h"
#include "text_form/values.h"

namespace korvane {
namespace review {
namespace {

using Names = std::span<const std::string_view>;

// A value by its name; by its number where it has none.
std::string named(std::uint8_t value, Names names, std::uint8_t first = 0) {
    return valueText(text_form::Choice{names, first}.write(value));
}

// With a space before it, where there is any.
std::string gbkName(const std::string& gbk) {
    return gbk.empty() ? "" : ' ' + shownText(gbkToUtf8(gbk));
}

template <class List, class Text>
std::string listed(const List& list, Text text, const char* none) {
    std::string result;
    for (const auto& item : list) result += (result.empty() ? "" : ", ") + text(item);
    return result.empty() ? none : result;
}

std::string pointText(const FrequencyPoint& point) {
    return std::to_string(point.channelNumber) + " (" +
           text_form::frequencyText(point.centreFrequency) + ", " +
           named(point.bandwidth, bandwidthNames) + ')';
}

std::string networkLines(const NetworkInfo& network) {
    const auto number = [](const NeighbourNetwork& n) { return std::to_string(n.networkNumber); };
    return "network " + std::to_string(network.networkNumber) + gbkName(network.name) + ", level " +
           std::to_string(network.level) + ", country code" +
           (network.countryCode[0] == '\0' ? " none" : gbkName(fieldText(network.countryCode))) +
           "\n  frequency point " + pointText(network.ownFrequency) +
           "\n  other frequency points: " + listed(network.otherFrequencies, pointText, "none") +
           "\n  other networks: " + listed(network.neighbours, number, "none") + '\n';
}

std::string use(const MultiplexFrame& frame) {
    const std::int64_t capacity = frameCapacity(frame) * 8;
    std::int64_t used = 0;
    for (const ServiceRecord& service : frame.services) used += service.bandwidth;
    const std::string text = std::to_string(used) + " of " + std::to_string(capacity) + " bit/s";
    return capacity == 0 ? text : text + " (" + std::to_string(used * 100 / capacity) + "%)";
}

std::string frameLine(const FrameAt& at) {
    const MultiplexFrame& frame = at.frame;
    return placeOf(at) + ": " + named(frame.modulation, modulationNames) + ", RS " +
           named(frame.rsRate, rsCodeRateNames) + ", LDPC " + named(frame.ldpcRate, ldpcRateNames) +
           ", time slots " + rangesText({frame.timeSlots.begin(), frame.timeSlots.size()}) + ", " +
           use(frame) + '\n';
}

// 0 stands for a media service.
std::string typeText(const ServiceRecord& service) {
    constexpr std::uint8_t firstType = 1;
    return named(std::max(service.type, firstType), serviceTypeTerms, firstType);
}

std::string sources(const ServiceRecord& service) {
    return service.esgInternal == 1 ? "the device itself"
                                    : listed(service.components, channelTerm, "no channel");
}

std::string serviceLine(const ServiceAt& at, const Whole& whole) {
    const ServiceRecord& service = at.service;
    const auto& description = descriptionOf(service, at.at.kind, whole.content.descriptions);
    return "  service " + std::to_string(service.serviceId) + gbkName(fieldText(description.name)) +
           ": " + typeText(service) + (service.scrambled == 1 ? ", scrambled, " : ", ") +
           std::to_string(service.bandwidth) + " bit/s, from " + sources(service) + '\n';
}

std::string frameLines(const Whole& whole) {
    std::string lines;
    auto service = whole.services.begin();
    for (const FrameAt& frame : whole.frames) {
        lines += frameLine(frame);
        for (; service != whole.services.end() && &service->at == &frame; ++service)
            lines += serviceLine(*service, whole);
    }
    return lines;
}

bool isStream(const InputChannelRecord& channel) {
    return channel.type <= static_cast<std::uint8_t>(ChannelType::Dra);
}

std::string channelLines(const FlatChannelList& channels) {
    std::string lines = "input channels: " + std::to_string(channels.size()) + " of " +
                        std::to_string(channels.limit()) + '\n';
    for (const InputChannelRecord& channel : channels)
        lines += "  " + std::to_string(channel.channelId) + ": " + channelTerm(channel) +
                 (isStream(channel) ? ", " + codingName(channel) : "") + '\n';
    return lines;
}

}  // namespace
}  // namespace review

std::string summaryOf(const Configuration& configuration) {
    const review::Whole whole(configuration);
    return review::networkLines(whole.tables->network) + review::frameLines(whole) +
           review::channelLines(configuration.channels);
}

}  // namespace korvane
