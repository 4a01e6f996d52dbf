#pragma once

#include <array>
#include <string>
#include <string_view>

#include "model/records.h"

namespace korvane {

// What the operator calls the types of input channels, by type.
inline constexpr std::array<std::string_view, limits::channelTypes> channelTypeNames = {
    "视频", "音频", "DRA", "ESG", "ECM", "EMM", "数据广播", "应急广播"};

// Where a channel comes from: "225.1.2.3:5000".
std::string receiveAddress(const InputChannelRecord& channel);

// A channel by type and address: "视频 225.1.2.3:5000". A type that is none is left out.
std::string channelName(const InputChannelRecord& channel);

}  // namespace korvane
