#include "editors/ca_page.h"

#include "resources/ids.h"

namespace korvane {

CaPage::CaPage(const Editing& editing, RevealingPrompts::Reveal reveal)
    : CaPageParts{{editing.prompts, std::move(reveal)},
                  {editing.model, CaPageParts::prompts},
                  CaSystemList(editing)},
      FormPage(form, CaPageParts::prompts) {
    addList(systems, editing.prompts, IDC_CA_SYSTEMS, firstListMenu);
}

}  // namespace korvane
