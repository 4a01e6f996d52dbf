#pragma once

#include "model/config_model.h"
#include "model/records.h"

namespace korvane {

// Both multiplex tables of the sample configuration, their services fed from these channels.
void addSampleTables(ConfigTables& tables, const FlatChannelList& channels);

// The service and frequency tables that belong to them: the continuous services on the network's
// own frequency in the order of their frames, two of them on another frequency as well, and the
// short-time services.
void addSampleServiceFrequencies(ConfigTables& tables);

inline constexpr std::uint8_t sampleChannelNumber = 20;
inline constexpr std::uint8_t sampleOtherChannelNumber = 24;
inline constexpr std::uint16_t sampleCinemaServiceId = 105;
inline constexpr std::uint16_t sampleMusicServiceId = 201;

}  // namespace korvane
