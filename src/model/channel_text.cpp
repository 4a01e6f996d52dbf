#include "model/channel_text.h"

namespace korvane {

std::string receiveAddress(const InputChannelRecord& channel) {
    std::string text;
    for (const std::uint8_t octet : channel.address) text += std::to_string(octet) + '.';
    text.back() = ':';
    return text + std::to_string(channel.port);
}

std::string channelName(const InputChannelRecord& channel) {
    if (channel.type >= channelTypeNames.size()) return receiveAddress(channel);
    return std::string(channelTypeNames[channel.type]) + ' ' + receiveAddress(channel);
}

}  // namespace korvane
