#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "device/command_table.h"
#include "model/config_image.h"
#include "model/records.h"
#include "simulator/datagram.h"

namespace korvane {

// One whole configuration as it travels: every byte as received, numbers big-endian.
struct DeviceConfiguration {
    static constexpr std::size_t channelListSize = detail::channelListLimit;
    static constexpr std::size_t block2002Size =
        commandOf(CommandCode::SetImageBlock2002).requestSize;

    ConfigImage image{};
    ServiceDescriptionImage descriptions{};
    std::array<std::uint8_t, block2002Size> block2002{};
    // The count (0-60) and that many records; what is behind them is zero.
    std::array<std::uint8_t, channelListSize> channels{};

    // The bytes in use of `channels`.
    ByteView channelList() const {
        return ByteView(channels).first(1 + channels[0] * sizeof(InputChannelRecord));
    }
};

// Everything that a device keeps without power. "Set" is what the panel wrote last, "applied" what
// the device works with since the last ActivateConfig or ApplyDeviceParams.
struct DeviceState {
    DeviceConfiguration set;
    DeviceConfiguration applied;
    DeviceParamBlock paramsSet{};
    DeviceParamBlock paramsApplied{};
};

bool operator==(const DeviceConfiguration& a, const DeviceConfiguration& b);
bool operator==(const DeviceState& a, const DeviceState& b);

// The tables of a configuration in host order. The channel list is not part of them: services hold
// their own copies.
std::unique_ptr<ConfigTables> decodeConfiguration(const DeviceConfiguration& configuration);

}  // namespace korvane
