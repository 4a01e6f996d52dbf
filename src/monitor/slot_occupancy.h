#pragma once

#include <array>
#include <cstdint>

#include "device/status_records.h"

namespace korvane {

// For each bar of the occupancy chart the percentage, rounded down, of its frame's channel capacity
// that carries data: as many bars in a row for each frame as the frame has time slots, in the order
// of the frames, whichever slots they are. Bars that no slot is left for are 0, and so are those of
// a frame without capacity; what goes beyond the last bar is not shown. More data than capacity
// gives more than 100.
std::array<std::uint64_t, limits::timeSlots> slotOccupancy(const DeviceStatusImage& status);

}  // namespace korvane
