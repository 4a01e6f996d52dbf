#include "editors/frame_slots.h"

#include <algorithm>

namespace korvane {
namespace {

std::size_t behind(const MultiplexFrame& frame, std::size_t next) {
    for (const std::uint8_t slot : frame.timeSlots) next = std::max<std::size_t>(next, slot + 1u);
    return next;
}

// By their numbers, not how many there are: frames that kept theirs are never met.
std::size_t firstShortTimeSlot(const ConfigTables& tables, std::size_t row) {
    std::size_t next = 0;
    for (const MultiplexFrame& frame : tables.continuous.frames) next = behind(frame, next);
    for (std::size_t i = 0; i < row; ++i) next = behind(tables.shortTime.frames[i], next);
    return next;
}

}  // namespace

FrameSlots::FrameSlots(const ConfigModel& model, const ConfigModel::FramePlace& place, int before)
    : model_(model), place_(place) {
    const auto& frames = model.tables().table(place.kind).frames;
    if (place.index >= 0) stored_ = frames[static_cast<std::size_t>(place.index)].timeSlots;
    const int row = place.index >= 0 ? place.index : before;
    row_ = row >= 0 ? static_cast<std::size_t>(row) : frames.size();
}

bool FrameSlots::keepsNumbers(std::size_t count) const {
    return place_.kind == TableKind::ShortTime && count == stored_.size();
}

TimeSlotList FrameSlots::numbered(std::size_t count) const {
    if (keepsNumbers(count)) return stored_;
    if (place_.kind == TableKind::Continuous)
        return model_.allocateTimeSlots(place_.kind, place_.index, count);
    TimeSlotList slots;
    const std::size_t first = firstShortTimeSlot(model_.tables(), row_);
    for (std::size_t i = 0; i < count; ++i) slots.append(static_cast<std::uint8_t>(first + i));
    return slots;
}

// The slots that are before this frame, and those that move with it.
std::size_t FrameSlots::others() const {
    const auto& frames = model_.tables().table(place_.kind).frames;
    const bool shortTime = place_.kind == TableKind::ShortTime;
    std::size_t sum = shortTime ? firstShortTimeSlot(model_.tables(), row_) : 0;
    for (std::size_t i = shortTime ? row_ : 0; i < frames.size(); ++i)
        if (static_cast<int>(i) != place_.index) sum += frames[i].timeSlots.size();
    return sum;
}

std::size_t FrameSlots::excess(std::size_t count) const {
    const bool shrinks = place_.kind == TableKind::Continuous && count <= stored_.size();
    if (shrinks || keepsNumbers(count)) return 0;
    const std::size_t needed = others() + count;
    return needed > limits::timeSlots ? needed - limits::timeSlots : 0;
}

void renumberShortTime(ConfigModel& model, std::size_t row) {
    const auto& frames = model.tables().shortTime.frames;
    std::size_t next = firstShortTimeSlot(model.tables(), row);
    for (; row < frames.size(); ++row)
        for (std::size_t i = 0; i < frames[row].timeSlots.size(); ++i)
            model.setTimeSlot(TableKind::ShortTime, static_cast<int>(row), i,
                              static_cast<std::uint8_t>(next++));
}

}  // namespace korvane
