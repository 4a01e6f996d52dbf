#include "editors/component_selection_dialog.h"

#include "resources/ids.h"
#include "ui/list_view.h"

namespace korvane {

bool ComponentSelectionDialog::onInit() {
    const auto candidates = control<ListView>(IDC_CANDIDATES);
    candidates.setUp(form_.columns(), ListView::Marks::CheckBoxes);
    candidates.setRows(form_.rows());
    return FormDialog::onInit();
}

}  // namespace korvane
