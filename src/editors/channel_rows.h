#pragma once

#include <span>
#include <vector>

#include "forms/edit_list.h"
#include "model/records.h"

namespace korvane {

// What lists show of input channels, by the type of those that they hold.
std::vector<ListColumn> channelColumns(ChannelType type);
std::vector<ListRow> channelRows(std::span<const InputChannelRecord> channels, ChannelType type);

}  // namespace korvane
