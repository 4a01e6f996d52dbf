#pragma once

#include <memory>
#include <string_view>

#include "model/config_model.h"
#include "simulator/device_state.h"

namespace korvane {

// A configuration such as an operator would have built: all channel types, both multiplex tables
// with several frames, conditional access, neighbour networks. It obeys every rule of the editors,
// and fetching and saving it unchanged leaves every byte as it is.

// 27 channels in the order of their types.
FlatChannelList sampleChannels();

std::unique_ptr<ConfigTables> sampleTables();

// Tables, channels and descriptions as they travel.
std::unique_ptr<DeviceConfiguration> sampleConfiguration();

// A device fresh from the factory, its control port at this dotted address of at most 15
// characters: the sample configuration is set and applied.
std::unique_ptr<DeviceState> sampleState(std::string_view address);

}  // namespace korvane
