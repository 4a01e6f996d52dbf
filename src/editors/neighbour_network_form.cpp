#include "editors/neighbour_network_form.h"

#include "model/frequency_text.h"
#include "resources/ids.h"

namespace korvane {

NeighbourNetworkForm::NeighbourNetworkForm(ConfigChecks checks,
                                           const std::optional<NeighbourNetwork>& edited)
    : checks_(checks),
      edited_(edited),
      network_(edited.value_or(NeighbourNetwork{})),
      levelIndex_(levelIndex(network_.level)) {}

int NeighbourNetworkForm::dialog() const {
    return IDD_NEIGHBOUR_NETWORK;
}

void NeighbourNetworkForm::describe(Fields& fields) {
    fields.choice(IDC_NETWORK_LEVEL, levelIndex_, networkLevelNames);
    fields.number(IDC_NEIGHBOUR_NUMBER, network_.networkNumber);
    fields.number(IDC_CHANNEL_NUMBER, network_.channelNumber);
    fields.megahertz(IDC_NEIGHBOUR_FREQUENCY, network_.centreFrequency);
    fields.choice(IDC_BANDWIDTH, network_.bandwidth, bandwidthNames);
}

// The table holds the edited network itself, so a number that stayed is no news.
int NeighbourNetworkForm::accept() {
    network_.level = levelAt(levelIndex_);
    const bool newNumber = !edited_ || edited_->networkNumber != network_.networkNumber;
    return newNumber && checks_.checkNeighbourNetwork(network_) != 0 ? IDC_NEIGHBOUR_NUMBER : 0;
}

}  // namespace korvane
