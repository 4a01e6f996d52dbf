#include "editors/time_slot_form.h"

#include "resources/ids.h"

namespace korvane {

bool slotsFit(const FrameSlots& slots, std::size_t count, Prompts& prompts) {
    const std::size_t excess = slots.excess(count);
    if (excess != 0) prompts.warning("已达最大时隙数，超出时隙数(" + std::to_string(excess) + ")");
    return excess == 0;
}

int TimeSlotForm::dialog() const {
    return IDD_TIME_SLOTS;
}

void TimeSlotForm::describe(Fields& fields) {
    fields.number(IDC_SLOT_NUMBER, count_);
}

int TimeSlotForm::accept() {
    return fits() ? 0 : IDC_SLOT_NUMBER;
}

// The model's check knows the continuous frames' last slot alone.
bool TimeSlotForm::fits() {
    const std::size_t before = slots_.stored().size();
    const bool passed =
        count_ <= before ||
        ConfigChecks(editing_.model, editing_.prompts)
                .checkTimeSlotCount(static_cast<std::uint32_t>(count_ - before)) == 0;
    return passed && slotsFit(slots_, count_, editing_.prompts);
}

}  // namespace korvane
