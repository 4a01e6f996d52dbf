#include "model/capacity.h"

#include <algorithm>
#include <array>

namespace korvane {
namespace {

constexpr std::array<std::int64_t, 4> rsInformationBytes = {240, 224, 192, 176};
// 72 bytes for each bit, information byte and slot, times the LDPC rates 1/2 and 3/4.
constexpr std::array<std::int64_t, 2> ldpcFactor = {36, 54};
constexpr std::array<std::int64_t, 3> bitsPerSymbol = {1, 2, 4};

// Bit/s in 32 bits, as the device counts them.
std::uint32_t capacityBits(const MultiplexFrame& frame) {
    return static_cast<std::uint32_t>(frameCapacity(frame) * 8);
}

}  // namespace

std::int64_t frameCapacity(const MultiplexFrame& frame) {
    if (frame.rsRate >= rsInformationBytes.size() || frame.ldpcRate >= ldpcFactor.size() ||
        frame.modulation >= bitsPerSymbol.size())
        return 0;
    return bitsPerSymbol[frame.modulation] * rsInformationBytes[frame.rsRate] *
           ldpcFactor[frame.ldpcRate] * static_cast<std::int64_t>(frame.timeSlots.size());
}

bool serviceBandwidthOverflows(const MultiplexFrame& frame, std::size_t serviceIndex,
                               std::uint32_t bandwidth, std::int32_t* available) {
    std::uint32_t left = capacityBits(frame);
    for (std::size_t i = 0; i < frame.services.size(); ++i)
        if (i != serviceIndex) left -= frame.services[i].bandwidth;
    if (available) *available = static_cast<std::int32_t>(left);
    return static_cast<std::int32_t>(left) < static_cast<std::int32_t>(bandwidth);
}

bool totalBandwidthOverflows(const MultiplexFrame& frame, std::uint32_t& total,
                             std::int32_t* difference) {
    total = 0;
    for (const ServiceRecord& service : frame.services) total += service.bandwidth;
    const std::uint32_t capacity = capacityBits(frame);
    const auto spare = static_cast<std::int32_t>(capacity - total);
    if (difference) *difference = std::max(spare, static_cast<std::int32_t>(total - capacity));
    return spare < 0;
}

}  // namespace korvane
