#pragma once

#include <cstddef>
#include <cstdint>

#include "model/records.h"

namespace korvane {

// The payload capacity of a frame in bytes a second: bits per symbol x RS k x 72 x LDPC rate x time
// slots, which is what bits x k x (135 x 1,024) x rate x slots / 1,920 comes to. Exact for every
// valid combination; 0 when one of the frame's indexes names nothing.
std::int64_t frameCapacity(const MultiplexFrame& frame);

// Whether `bandwidth` (bit/s) is more than the frame's other services leave for the one at
// `serviceIndex`; an index behind the list counts all of them. `available`, when given, gets what
// they leave, in bit/s. Sums wrap at 32 bits, and the comparison is signed.
bool serviceBandwidthOverflows(const MultiplexFrame& frame, std::size_t serviceIndex,
                               std::uint32_t bandwidth, std::int32_t* available = nullptr);

// Whether all services together need more than the frame carries. `total` gets their sum in bit/s;
// `difference`, when given, how far it is from the capacity, either way. Sums wrap at 32 bits.
bool totalBandwidthOverflows(const MultiplexFrame& frame, std::uint32_t& total,
                             std::int32_t* difference = nullptr);

}  // namespace korvane
