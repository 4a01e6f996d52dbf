#include "editors/frame_lists.h"

#include "editors/frame_form.h"

namespace korvane {

std::vector<ListRow> SlotList::rows() const {
    std::vector<ListRow> rows;
    for (const std::uint8_t slot : frame_.frame().timeSlots) rows.push_back({std::to_string(slot)});
    return rows;
}

bool SlotList::add(int) {
    return frame_.configureTimeSlots();
}

std::vector<ListRow> SubFrameList::rows() const {
    std::vector<ListRow> rows;
    for (const ServiceRecord& service : frame_.frame().services)
        rows.push_back({std::to_string(service.subFrameNumber), std::to_string(service.serviceId)});
    return rows;
}

EditList::Offer SubFrameList::offer(int row) const {
    return frame_.offersSubFrames() ? EditList::offer(row) : Offer{false, false, false};
}

bool SubFrameList::add(int) {
    return frame_.addSubFrame();
}

bool SubFrameList::edit(int row) {
    return frame_.editSubFrame(static_cast<std::size_t>(row));
}

bool SubFrameList::remove(int row) {
    return frame_.removeSubFrame(static_cast<std::size_t>(row));
}

}  // namespace korvane
