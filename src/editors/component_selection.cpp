#include "editors/component_selection.h"

#include <numeric>

#include "editors/channel_rows.h"
#include "resources/ids.h"

namespace korvane {

std::vector<ListColumn> ComponentSelectionForm::columns() const {
    return channelColumns(type_);
}

std::vector<ListRow> ComponentSelectionForm::rows() const {
    return channelRows(candidates_, type_);
}

int ComponentSelectionForm::dialog() const {
    return IDD_COMPONENT_SELECTION;
}

void ComponentSelectionForm::describe(Fields& fields) {
    fields.checkedRows(IDC_CANDIDATES, checked_);
}

void ComponentSelectionForm::entered(int control, FieldControls& controls) {
    if (control != IDC_SELECT_ALL && control != IDC_SELECT_NONE) return;
    std::vector<int> rows(control == IDC_SELECT_ALL ? candidates_.size() : 0);
    std::iota(rows.begin(), rows.end(), 0);
    controls.setCheckedRows(IDC_CANDIDATES, rows);
}

std::vector<InputChannelRecord> ComponentSelectionForm::chosen() const {
    std::vector<InputChannelRecord> chosen;
    for (const int row : checked_) chosen.push_back(candidates_.at(static_cast<std::size_t>(row)));
    return chosen;
}

}  // namespace korvane
