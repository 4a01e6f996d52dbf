#pragma once

#include "editors/component_selection.h"
#include "ui/form_dialog.h"

namespace korvane {

// The candidates, each with a check box.
class ComponentSelectionDialog : public FormDialog {
  public:
    ComponentSelectionDialog(ComponentSelectionForm& form, Prompts& prompts)
        : FormDialog(form, prompts), form_(form) {}

  protected:
    bool onInit() override;

  private:
    ComponentSelectionForm& form_;
};

}  // namespace korvane
