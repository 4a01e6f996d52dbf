#pragma once

#include "editors/service_frequency_table.h"
#include "forms/revealing_prompts.h"
#include "ui/form_page.h"

namespace korvane {

struct ServiceFrequencyPageParts {
    RevealingPrompts prompts;
    ServiceFrequencyTableForm form;
    ServiceFrequencyList pairs;
};

// The page of one of the two service/frequency tables.
class ServiceFrequencyPage : private ServiceFrequencyPageParts, public FormPage {
  public:
    ServiceFrequencyPage(const Editing& editing, RevealingPrompts::Reveal reveal, TableKind kind);
};

}  // namespace korvane
