#pragma once

#include "editors/network_table.h"
#include "forms/revealing_prompts.h"
#include "ui/form_page.h"

namespace korvane {

struct NetworkPageParts {
    RevealingPrompts prompts;
    NetworkTableForm form;
    FrequencyPointList points;
    NeighbourNetworkList neighbours;
};

// The page of the network information table.
class NetworkPage : private NetworkPageParts, public FormPage {
  public:
    NetworkPage(const Editing& editing, RevealingPrompts::Reveal reveal);

  protected:
    void onSize(int width, int height) override;
};

}  // namespace korvane
