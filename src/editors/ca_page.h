#pragma once

#include "editors/ca_table.h"
#include "forms/revealing_prompts.h"
#include "ui/form_page.h"

namespace korvane {

struct CaPageParts {
    RevealingPrompts prompts;
    CaTableForm form;
    CaSystemList systems;
};

// The page of the CA description table.
class CaPage : private CaPageParts, public FormPage {
  public:
    CaPage(const Editing& editing, RevealingPrompts::Reveal reveal);
};

}  // namespace korvane
