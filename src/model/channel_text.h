#pragma once

#include <array>
#include <string>
#include <string_view>

#include "model/records.h"

namespace korvane {

// What the operator calls the types of input channels, by type.
inline constexpr std::array<std::string_view, limits::channelTypes> channelTypeNames = {
    "视频", "音频", "DRA", "ESG", "ECM", "EMM", "数据广播", "应急广播"};

// What stands for the values of their fields, by value.
inline constexpr std::array<std::string_view, 2> videoCodingNames = {"AVS", "H.264"};
inline constexpr std::array<std::string_view, 4> videoFrameRateNames = {"25Hz", "30Hz", "12.5Hz",
                                                                        "15Hz"};
inline constexpr std::array<std::string_view, 3> audioCodingNames = {"DRA", "HE-AAC", "AAC"};
inline constexpr std::array<std::string_view, 9> audioSampleRateNames = {
    "8KHz", "12KHz", "16KHz", "22.05KHz", "24KHz", "32KHz", "44.1KHz", "48KHz", "96KHz"};
inline constexpr std::array<std::string_view, 2> encapsulationNames = {"模式1", "模式2"};

// The same in English, by stored value; of the encapsulation modes 0 is the second one.
inline constexpr std::array<std::string_view, limits::channelTypes> channelTypeTerms = {
    "video", "audio", "DRA", "ESG", "ECM", "EMM", "data", "emergency"};
inline constexpr std::array<std::string_view, 2> encapsulationTerms = {"mode 2", "mode 1"};
// Of services, from type 1 on.
inline constexpr std::array<std::string_view, 5> serviceTypeTerms = {"media", "DRA", "ESG", "EMM",
                                                                     "data"};

// Where a channel comes from: "225.1.2.3:5000".
std::string receiveAddress(const InputChannelRecord& channel);

// How it comes: "RTP", "UDP" or "TCP".
std::string_view inputMode(const InputChannelRecord& channel);

// Of a video, audio or DRA channel. A value that has no name is given as its number.
std::string codingName(const InputChannelRecord& channel);
// Of an audio or DRA channel; likewise.
std::string sampleRateName(const InputChannelRecord& channel);

// A channel by type and address: "视频 225.1.2.3:5000". A type that is none is left out.
std::string channelName(const InputChannelRecord& channel);

}  // namespace korvane
