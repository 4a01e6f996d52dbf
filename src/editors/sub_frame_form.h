#pragma once

#include <optional>
#include <string>

#include "editors/service_components.h"

namespace korvane {

// A sub-frame of a multiplex frame, and with it its service.
class SubFrameForm : public Form {
  public:
    // A new one, for which this sub-frame id is proposed, or the one that is edited.
    SubFrameForm(const Editing& editing, FrameQuestions& frame, std::uint8_t proposedId);
    SubFrameForm(const Editing& editing, FrameQuestions& frame, const ServiceRecord& edited);

    int dialog() const override;
    void describe(Fields& fields) override;
    void entered(int control, FieldControls& controls) override;
    int accept() override;

    // Those of a media service; the last one is that of other services, too.
    EditList& video() { return components_.video(); }
    EditList& audio() { return components_.audio(); }
    EditList& ecm() { return components_.ecm(); }
    // As far as it was entered.
    std::uint32_t serviceId() { return components_.entered().serviceId; }

    // What was entered, once it was accepted.
    const ServiceRecord& service() const { return service_; }

  private:
    SubFrameForm(const Editing& editing, FrameQuestions& frame, const ServiceRecord& service,
                 bool isNew);

    void changeType(int type, FieldControls& controls);
    void layOut(FieldControls& controls);
    void fillComponents(FieldControls& controls);
    void showFreeBandwidth(FieldControls& controls) const;
    int checkChoices();
    int askFrame();
    void store();

    Editing editing_;
    FrameQuestions& frame_;
    bool isNew_;
    ServiceRecord service_;
    ServiceComponents components_;
    int shownType_;  // whose controls are visible
    std::uint8_t subFrameId_, encapsulation_;
    std::uint32_t bandwidth_;
    std::string name_;
};

}  // namespace korvane
