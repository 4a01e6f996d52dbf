#pragma once

#include "forms/edit_list.h"
#include "forms/form.h"
#include "model/records.h"

namespace korvane {

// Which of the candidates, all of one type, the operator chooses.
class ComponentSelectionForm : public Form {
  public:
    ComponentSelectionForm(ChannelType type, std::vector<InputChannelRecord> candidates)
        : type_(type), candidates_(std::move(candidates)) {}

    std::vector<ListColumn> columns() const;
    std::vector<ListRow> rows() const;

    int dialog() const override;
    void describe(Fields& fields) override;
    void entered(int control, FieldControls& controls) override;
    int accept() override { return 0; }

    // In the order of the candidates, once the form was accepted.
    std::vector<InputChannelRecord> chosen() const;

  private:
    ChannelType type_;
    std::vector<InputChannelRecord> candidates_;
    std::vector<int> checked_;
};

}  // namespace korvane
