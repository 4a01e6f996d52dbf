#pragma once

#include <string>

#include "editors/editing.h"
#include "forms/edit_list.h"

namespace korvane {

// The network information table's own fields.
class NetworkTableForm : public Form {
  public:
    NetworkTableForm(ConfigModel& model, Prompts& prompts) : model_(model), prompts_(prompts) {}

    int dialog() const override;
    void load() override;
    void describe(Fields& fields) override;
    int accept() override;

  private:
    void enterInto(NetworkInfo& network) const;

    ConfigModel& model_;
    Prompts& prompts_;
    std::uint8_t tableId_ = 0, levelIndex_ = 0;
    std::uint16_t networkNumber_ = 0;
    std::string countryCode_, name_;  // GBK
    FrequencyPoint ownFrequency_{};
};

// Its frequency points beside the network's own.
class FrequencyPointList : public EditList {
  public:
    explicit FrequencyPointList(const Editing& editing) : editing_(editing) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    ConfigChecks checks() const { return {editing_.model, editing_.prompts}; }
    const auto& points() const { return editing_.model.tables().network.otherFrequencies; }

    Editing editing_;
};

// Its neighbours.
class NeighbourNetworkList : public EditList {
  public:
    explicit NeighbourNetworkList(const Editing& editing) : editing_(editing) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    ConfigChecks checks() const { return {editing_.model, editing_.prompts}; }
    const auto& networks() const { return editing_.model.tables().network.neighbours; }

    Editing editing_;
};

}  // namespace korvane
