#pragma once

#include <optional>
#include <string>

#include "editors/editing.h"
#include "editors/frame_questions.h"

namespace korvane {

// A sub-frame of a multiplex frame, and with it its service.
class SubFrameForm : public Form {
  public:
    // A new one, for which this sub-frame id is proposed, or the one that is edited.
    SubFrameForm(const Editing& editing, FrameQuestions& frame, std::uint8_t proposedId);
    SubFrameForm(const Editing& editing, FrameQuestions& frame, const ServiceRecord& edited);

    int dialog() const override;
    void describe(Fields& fields) override;
    int accept() override;

    // What was entered, once it was accepted.
    const ServiceRecord& service() const { return service_; }

  private:
    Editing editing_;
    FrameQuestions& frame_;
    std::optional<ServiceRecord> edited_;
    ServiceRecord service_;
    std::uint32_t serviceId_;
};

}  // namespace korvane
