#include "editors/service_frequency_page.h"

#include "resources/ids.h"

namespace korvane {

ServiceFrequencyPage::ServiceFrequencyPage(const Editing& editing, RevealingPrompts::Reveal reveal,
                                           TableKind kind)
    : ServiceFrequencyPageParts{{editing.prompts, std::move(reveal)},
                                {editing.model, ServiceFrequencyPageParts::prompts, kind},
                                {editing, kind}},
      FormPage(form, ServiceFrequencyPageParts::prompts) {
    addList(pairs, editing.prompts, IDC_PAIRS, firstListMenu);
}

}  // namespace korvane
