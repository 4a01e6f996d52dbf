#pragma once

#include "editors/editing.h"
#include "editors/frame_slots.h"

namespace korvane {

// How many time slots a frame has.
class TimeSlotForm : public Form {
  public:
    TimeSlotForm(const Editing& editing, const FrameSlots& slots, std::uint8_t count)
        : editing_(editing), slots_(slots), count_(count) {}

    int dialog() const override;
    void describe(Fields& fields) override;
    int accept() override;

    // What was entered, once it was accepted.
    std::uint8_t count() const { return count_; }

  private:
    bool fits();

    Editing editing_;
    const FrameSlots& slots_;
    std::uint8_t count_;
};

// Whether a frame may have so many slots; when it may not, the operator is told by how many.
bool slotsFit(const FrameSlots& slots, std::size_t count, Prompts& prompts);

}  // namespace korvane
