#include "monitor/slot_occupancy.h"

#include "monitor/held_count.h"

namespace korvane {
namespace {

std::uint64_t percentage(const FrameStats& frame) {
    if (frame.channelCapacity == 0) return 0;
    return std::uint64_t{frame.effectiveData} * 100 / frame.channelCapacity;
}

}  // namespace

std::array<std::uint64_t, limits::timeSlots> slotOccupancy(const DeviceStatusImage& status) {
    std::array<std::uint64_t, limits::timeSlots> bars{};
    std::size_t next = 0;
    const std::size_t frames = heldCount(status.frameCount, status.frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const FrameStats& frame = status.frames[i];
        const std::size_t slots = heldCount(frame.timeSlotCount, frame.timeSlots);
        const std::size_t shown = std::min(slots, bars.size() - next);
        std::fill_n(bars.begin() + next, shown, percentage(frame));
        next += shown;
    }
    return bars;
}

}  // namespace korvane
