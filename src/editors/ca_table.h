#pragma once

#include "editors/editing.h"
#include "forms/edit_list.h"

namespace korvane {

// The CA description table's own fields.
class CaTableForm : public Form {
  public:
    CaTableForm(ConfigModel& model, Prompts& prompts) : model_(model), prompts_(prompts) {}

    int dialog() const override;
    void load() override;
    void describe(Fields& fields) override;
    int accept() override;

  private:
    ConfigModel& model_;
    Prompts& prompts_;
    std::uint8_t tableId_ = 0, sendFlag_ = 0, sectionCount_ = 0;
};

// Its CA systems.
class CaSystemList : public EditList {
  public:
    explicit CaSystemList(const Editing& editing) : editing_(editing) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    ConfigChecks checks() const { return {editing_.model, editing_.prompts}; }
    const CaDescriptionTable& table() const { return editing_.model.tables().caDescriptions; }

    Editing editing_;
};

}  // namespace korvane
