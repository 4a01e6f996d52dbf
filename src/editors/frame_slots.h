#pragma once

#include "model/config_model.h"

namespace korvane {

// Numbers a frame's time slots before it is stored: a continuous frame's as the model will, a
// short-time frame's behind those of all continuous frames and of the short-time frames before it.
class FrameSlots {
  public:
    // Of a frame of the model, or of a new one that will be inserted before the one at `before`.
    FrameSlots(const ConfigModel& model, const ConfigModel::FramePlace& place, int before);

    // With as many slots as it has in the model, a short-time frame keeps its numbers.
    TimeSlotList numbered(std::size_t count) const;
    // How far above the last slot there is the frame would come with `count` slots, or one that is
    // numbered anew with it; 0 when all of them fit. To keep or lower a count that a continuous
    // frame has is never too much.
    std::size_t excess(std::size_t count) const;
    // The frame's slots in the model; none of a new one.
    const TimeSlotList& stored() const { return stored_; }

  private:
    bool keepsNumbers(std::size_t count) const;
    std::size_t others() const;

    const ConfigModel& model_;
    ConfigModel::FramePlace place_;
    std::size_t row_;
    TimeSlotList stored_;
};

// Numbers the short-time frame at `row`, whose count has changed, and those behind it.
void renumberShortTime(ConfigModel& model, std::size_t row);

}  // namespace korvane
