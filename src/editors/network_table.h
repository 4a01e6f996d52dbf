#pragma once

#include <string>

#include "editors/editing.h"

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
class FrequencyPointList : public RecordList {
  public:
    explicit FrequencyPointList(const Editing& editing) : RecordList(editing) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    const auto& points() const { return tables().network.otherFrequencies; }
};

// Its neighbours.
class NeighbourNetworkList : public RecordList {
  public:
    explicit NeighbourNetworkList(const Editing& editing) : RecordList(editing) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    const auto& networks() const { return tables().network.neighbours; }
};

}  // namespace korvane
