#pragma once

#include <optional>

#include "forms/form.h"
#include "model/config_checks.h"

namespace korvane {

// One CA system: which service it protects, and how its EMM and ECM come.
class CaSystemForm : public Form {
  public:
    // A new one, or the one that is edited.
    explicit CaSystemForm(ConfigChecks checks, const std::optional<CaSystemEntry>& edited = {});

    int dialog() const override;
    void describe(Fields& fields) override;
    int accept() override;

    // What was entered, once it was accepted.
    const CaSystemEntry& entry() const { return entry_; }

  private:
    int checkIds();

    ConfigChecks checks_;
    const std::optional<CaSystemEntry> edited_;
    CaSystemEntry entry_;
    std::uint32_t caSystemId_, serviceId_;  // as entered; the entry takes the low 16 bits
};

}  // namespace korvane
