#include "model/channel_text.h"
#include "review/rules.h"

namespace korvane::review {
namespace {

using Channel = InputChannelRecord;

template <class... Types>
bool isOneOf(const Channel& channel, Types... types) {
    return ((channel.type == static_cast<std::uint8_t>(types)) || ...);
}

Value valueIf(bool has, std::uint32_t value) {
    return has ? Value(value) : std::nullopt;
}

using enum ChannelType;

const Rule<Channel> rules[] = {
    {error, "another input channel has this id", "",
     [](const Whole& w, const Channel& c) {
         return isRepeated(w.content.channels, c, [](const Channel& a, const Channel& b) {
             return a.channelId == b.channelId;
         });
     }},
    {error, "another input channel has this address and port", "已有相同IP和端口的输入通道!",
     [](const Whole& w, const Channel& c) {
         return isRepeated(w.content.channels, c, [](const Channel& a, const Channel& b) {
             return a.address == b.address && a.port == b.port;
         });
     }},
};

const Check<Channel> checks[] = {
    {error, "address", receiveAddress,
     [](ConfigChecks& c, const Channel& channel) {
         return c.checkMulticastAddress(channel.address);
     }},
    // The editor of channels, other than that of CA systems, takes any.
    {warning, "data unit type", [](const Channel& c) { return std::to_string(c.dataUnitType); },
     [](ConfigChecks& c, const Channel& channel) {
         return isOneOf(channel, Ecm, Emm) ? c.checkDataUnitType(channel.dataUnitType) : 0;
     }},
};

const Range<Channel> ranges[] = {
    {error, "type", "", 0, channelTypeTerms.size() - 1,
     [](const Channel& c) -> Value { return c.type; }},
    {error, "payload type", "", 0, 127,
     [](const Channel& c) { return valueIf(isOneOf(c, Video, Audio, Dra), c.payloadType); }},
    {error, "video coding", "", 0, videoCodingNames.size() - 1,
     [](const Channel& c) { return valueIf(isOneOf(c, Video), c.videoCoding); }},
    {error, "video frame rate", "", 0, videoFrameRateNames.size() - 1,
     [](const Channel& c) { return valueIf(isOneOf(c, Video), c.videoFrameRate); }},
    {error, "audio coding", "", 0, audioCodingNames.size() - 1,
     [](const Channel& c) { return valueIf(isOneOf(c, Audio), c.audioCoding); }},
    {error, "audio coding", "", 0, 0,
     [](const Channel& c) { return valueIf(isOneOf(c, Dra), c.audioCoding); }},
    {error, "audio sample rate", "", 0, audioSampleRateNames.size() - 1,
     [](const Channel& c) { return valueIf(isOneOf(c, Audio, Dra), c.audioSampleRate); }},
};

}  // namespace

void judgeChannels(const Whole& whole, std::vector<Finding>& findings) {
    judgeAll(whole, whole.content.channels, findings, rules, checks, ranges);
}

}  // namespace korvane::review
