#include "model/channel_text.h"

#include "model/ipv4.h"

#include <span>

namespace korvane {
namespace {

std::string nameOf(std::size_t value, std::span<const std::string_view> names) {
    return value < names.size() ? std::string(names[value]) : std::to_string(value);
}

}  // namespace

std::string receiveAddress(const InputChannelRecord& channel) {
    return addressText(channel.address) + ':' + std::to_string(channel.port);
}

std::string_view inputMode(const InputChannelRecord& channel) {
    switch (static_cast<ChannelType>(channel.type)) {
        case ChannelType::Video:
        case ChannelType::Audio:
        case ChannelType::Dra:
            return "RTP";
        case ChannelType::Ecm:
        case ChannelType::Emm:
            return "UDP";
        default:
            return channel.receiveMode != 0 ? "UDP" : "TCP";
    }
}

std::string codingName(const InputChannelRecord& channel) {
    return static_cast<ChannelType>(channel.type) == ChannelType::Video
               ? nameOf(channel.videoCoding, videoCodingNames)
               : nameOf(channel.audioCoding, audioCodingNames);
}

std::string sampleRateName(const InputChannelRecord& channel) {
    return nameOf(channel.audioSampleRate, audioSampleRateNames);
}

std::string channelName(const InputChannelRecord& channel) {
    if (channel.type >= channelTypeNames.size()) return receiveAddress(channel);
    return std::string(channelTypeNames[channel.type]) + ' ' + receiveAddress(channel);
}

}  // namespace korvane
