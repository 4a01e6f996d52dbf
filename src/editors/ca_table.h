#pragma once

#include "editors/editing.h"

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
class CaSystemList : public RecordList {
  public:
    explicit CaSystemList(const Editing& editing) : RecordList(editing) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    const CaDescriptionTable& table() const { return tables().caDescriptions; }
};

}  // namespace korvane
