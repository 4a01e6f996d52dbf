#include "editors/sub_frame_form.h"

#include "resources/ids.h"

namespace korvane {

SubFrameForm::SubFrameForm(const Editing& editing, FrameQuestions& frame, std::uint8_t proposedId)
    : editing_(editing), frame_(frame), serviceId_(0) {
    constexpr std::uint32_t usualBandwidth = 480'000;
    service_.subFrameNumber = proposedId;
    service_.bandwidth = usualBandwidth;
}

SubFrameForm::SubFrameForm(const Editing& editing, FrameQuestions& frame,
                           const ServiceRecord& edited)
    : editing_(editing),
      frame_(frame),
      edited_(edited),
      service_(edited),
      serviceId_(edited.serviceId) {}

int SubFrameForm::dialog() const {
    return IDD_SUB_FRAME;
}

void SubFrameForm::describe(Fields& fields) {
    fields.number(IDC_SUB_FRAME_ID, service_.subFrameNumber);
    fields.number(IDC_SERVICE_ID, serviceId_);
    fields.number(IDC_SERVICE_BANDWIDTH, service_.bandwidth);
}

int SubFrameForm::accept() {
    if ((!edited_ || edited_->subFrameNumber != service_.subFrameNumber) &&
        frame_.checkSubFrameId(service_.subFrameNumber) != 0)
        return IDC_SUB_FRAME_ID;
    if ((!edited_ || edited_->serviceId != serviceId_) && frame_.checkServiceId(serviceId_) != 0)
        return IDC_SERVICE_ID;
    if (frame_.checkBandwidth(service_.bandwidth) != 0) return IDC_SERVICE_BANDWIDTH;
    service_.serviceId = static_cast<std::uint16_t>(serviceId_);
    return 0;
}

}  // namespace korvane
