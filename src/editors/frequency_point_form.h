#pragma once

#include <optional>

#include "forms/form.h"
#include "model/config_checks.h"

namespace korvane {

// One frequency point beside the network's own.
class FrequencyPointForm : public Form {
  public:
    // A new one, or the one that is edited.
    explicit FrequencyPointForm(ConfigChecks checks,
                                const std::optional<FrequencyPoint>& edited = {});

    int dialog() const override;
    void describe(Fields& fields) override;
    int accept() override;

    // What was entered, once it was accepted.
    const FrequencyPoint& point() const { return point_; }

  private:
    ConfigChecks checks_;
    const std::optional<FrequencyPoint> edited_;
    FrequencyPoint point_;
};

}  // namespace korvane
