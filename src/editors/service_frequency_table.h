#pragma once

#include "editors/editing.h"

namespace korvane {

// The entries of a service/frequency table that its page shows, by their indexes: all but those
// whose service only frames of the other kind carry.
std::vector<std::size_t> shownEntries(const ConfigTables& tables, TableKind kind);

// The own field of a service/frequency table.
class ServiceFrequencyTableForm : public Form {
  public:
    ServiceFrequencyTableForm(ConfigModel& model, Prompts& prompts, TableKind kind)
        : model_(model), prompts_(prompts), kind_(kind) {}

    int dialog() const override;
    void load() override;
    void describe(Fields& fields) override;
    int accept() override;

  private:
    ConfigModel& model_;
    Prompts& prompts_;
    TableKind kind_;
    std::uint8_t tableId_ = 0;
};

// Its pairs of service and frequency point, as far as the page shows them.
class ServiceFrequencyList : public RecordList {
  public:
    ServiceFrequencyList(const Editing& editing, TableKind kind)
        : RecordList(editing), kind_(kind) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    std::size_t entryAt(int row) const;

    TableKind kind_;
};

}  // namespace korvane
