#pragma once

#include <optional>

#include "forms/form.h"
#include "model/config_checks.h"

namespace korvane {

// One network beside this one.
class NeighbourNetworkForm : public Form {
  public:
    // A new one, or the one that is edited.
    explicit NeighbourNetworkForm(ConfigChecks checks,
                                  const std::optional<NeighbourNetwork>& edited = {});

    int dialog() const override;
    void describe(Fields& fields) override;
    int accept() override;

    // What was entered, once it was accepted.
    const NeighbourNetwork& network() const { return network_; }

  private:
    ConfigChecks checks_;
    const std::optional<NeighbourNetwork> edited_;
    NeighbourNetwork network_;
    std::uint8_t levelIndex_;
};

}  // namespace korvane
