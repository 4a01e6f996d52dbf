#pragma once

#include <optional>

#include "forms/form.h"
#include "model/config_checks.h"

namespace korvane {

// One service and a frequency point that it is on the air at.
class ServiceFrequencyForm : public Form {
  public:
    // A new pair of the table of this kind, or the one that is edited.
    ServiceFrequencyForm(ConfigChecks checks, TableKind kind,
                         const std::optional<ServiceFrequencyEntry>& edited = {});

    int dialog() const override;
    void describe(Fields& fields) override;
    int accept() override;

    // What was entered, once it was accepted.
    const ServiceFrequencyEntry& entry() const { return entry_; }

  private:
    ConfigChecks checks_;
    TableKind kind_;
    const std::optional<ServiceFrequencyEntry> edited_;
    ServiceFrequencyEntry entry_;
    std::uint32_t serviceId_;  // as entered; the entry takes the low 16 bits
};

}  // namespace korvane
