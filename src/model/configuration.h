#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "model/config_image.h"

namespace korvane {

using ChannelsLeftOut = std::vector<InputChannelRecord>;

// A whole configuration in the form in which devices and files hold it, numbers in host order.
// 680 KB: it belongs on no stack.
struct Configuration {
    FlatChannelList channels;
    ChannelsLeftOut channelsLeftOut;  // of a file that holds more
    ConfigImage image{};
    DeviceParamBlock params{};
    ServiceDescriptionImage descriptions{};
    // False for a file that ends before them: each service then gets a default one.
    bool hasDescriptions = true;
    // Of a file's head, where the panel keeps nothing; devices have no such bytes.
    std::array<std::uint8_t, 28> fileReserved{};
};

// Turn every big-endian field of what travels round; the device parameters have none.
void toNetworkOrder(Configuration& configuration);
void fromNetworkOrder(Configuration& configuration);

}  // namespace korvane
