#pragma once

#include <string>

#include "forms/edit_list.h"
#include "forms/form.h"
#include "model/config_checks.h"
#include "model/config_model.h"

namespace korvane {

// What every editor works with. All of it outlives the editor.
struct Editing {
    ConfigModel& model;
    Prompts& prompts;
    FormRunner& forms;
};

// A list of records of the model, of which each has a dialog.
class RecordList : public EditList {
  protected:
    explicit RecordList(const Editing& editing) : editing_(editing) {}

    ConfigChecks checks() const { return {editing_.model, editing_.prompts}; }
    const ConfigTables& tables() const { return editing_.model.tables(); }

    Editing editing_;
};

// Whether the model took a change; when it did not, the operator is told: the model refuses only
// what an editor should not have asked for.
inline bool taken(int result, Prompts& prompts) {
    if (result != 0) prompts.warning("操作失败，配置没有改变");
    return result == 0;
}

// Whether a list takes another record; when it is full, the operator is told. `records` is what
// they call them.
template <class List>
bool hasRoom(const List& list, std::string_view records, Prompts& prompts) {
    if (list.full())
        prompts.warning("最多支持" + std::to_string(List::limit()) + "个" + std::string(records));
    return !list.full();
}

}  // namespace korvane
