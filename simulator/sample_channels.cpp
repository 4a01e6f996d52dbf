#include <array>

#include "simulator/sample_configuration.h"

namespace korvane {

namespace {

struct ChannelPlan {
    ChannelType type;
    std::uint8_t count;
    std::uint16_t firstPort;
    std::uint16_t portStep;  // RTP leaves every second port to its control protocol
};

constexpr std::array<ChannelPlan, limits::channelTypes> plans = {{
    {ChannelType::Video, 7, 5000, 2},
    {ChannelType::Audio, 8, 5100, 2},
    {ChannelType::Dra, 3, 5200, 2},
    {ChannelType::Esg, 1, 6000, 1},
    {ChannelType::Ecm, 2, 6100, 1},
    {ChannelType::Emm, 2, 6200, 1},
    {ChannelType::Data, 3, 6300, 1},
    {ChannelType::Emergency, 1, 6400, 1},
}};

void setVideo(InputChannelRecord& channel, std::uint8_t number) {
    constexpr std::uint8_t avs = 0, h264 = 1, rate30Hz = 1;
    channel.videoCoding = number == 3 ? avs : h264;
    channel.payloadType = 96;
    channel.rtcpSync = 1;
    channel.frameRateGiven = number % 2;
    channel.videoFrameRate = channel.frameRateGiven != 0 ? rate30Hz : 0;
}

void setAudio(InputChannelRecord& channel, std::uint8_t coding, std::uint8_t number) {
    constexpr std::uint16_t rate32kHz = 5, rate48kHz = 7;
    channel.audioCoding = coding;
    channel.audioParametersGiven = 1;
    channel.payloadType = 97;
    channel.rtcpSync = 1;
    channel.audioSampleRate = number % 3 == 2 ? rate32kHz : rate48kHz;
}

// The data unit types that the conditional access entries name: EMM 128 and 130, ECM 129 and 131.
void setConditionalAccess(InputChannelRecord& channel, std::uint8_t firstType,
                          std::uint8_t number) {
    channel.dataUnitType = static_cast<std::uint8_t>(firstType + 2 * number);
    if (channel.type == static_cast<std::uint8_t>(ChannelType::Ecm))
        channel.maxSendIntervalMs = 1000;
}

void setCoding(InputChannelRecord& channel, ChannelType type, std::uint8_t number) {
    constexpr std::uint8_t dra = 0, heAac = 1, aac = 2, datagrams = 2;
    switch (type) {
        case ChannelType::Video:
            return setVideo(channel, number);
        case ChannelType::Audio:
            return setAudio(channel, number == 6 ? aac : heAac, number);
        case ChannelType::Dra:
            return setAudio(channel, dra, number);
        case ChannelType::Ecm:
            setConditionalAccess(channel, 129, number);
            break;
        case ChannelType::Emm:
            setConditionalAccess(channel, 128, number);
            break;
        default:
            break;
    }
    channel.receiveMode = datagrams;
}

}  // namespace

FlatChannelList sampleChannels() {
    FlatChannelList channels;
    for (const ChannelPlan& plan : plans) {
        for (std::uint8_t number = 0; number < plan.count; ++number) {
            InputChannelRecord channel{};
            channel.position = static_cast<std::uint8_t>(channels.size());
            channel.address = {239, 1, static_cast<std::uint8_t>(10 + static_cast<int>(plan.type)),
                               static_cast<std::uint8_t>(1 + number)};
            channel.port = static_cast<std::uint16_t>(plan.firstPort + number * plan.portStep);
            channel.type = static_cast<std::uint8_t>(plan.type);
            channel.channelId = static_cast<std::uint32_t>(channels.size() + 1);
            setCoding(channel, plan.type, number);
            channels.append(channel);
        }
    }
    return channels;
}

}  // namespace korvane
