#pragma once

#include "editors/editing.h"

namespace korvane {

// What the page of a multiplex table shows of its header, which nobody edits here.
class FrameListForm : public Form {
  public:
    FrameListForm(const ConfigModel& model, TableKind kind) : model_(model), kind_(kind) {}

    int dialog() const override;
    void load() override;
    void describe(Fields& fields) override;
    int accept() override { return 0; }

  private:
    const ConfigModel& model_;
    TableKind kind_;
    std::uint8_t tableId_ = 0;
    std::uint32_t channelNumber_ = 0;
};

// The frames of a multiplex table.
class FrameList : public RecordList {
  public:
    FrameList(const Editing& editing, TableKind kind) : RecordList(editing), kind_(kind) {}

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    // The continuous table's first frame is neither deleted, nor is another one put before it.
    Offer offer(int row) const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    using Frames = decltype(MultiplexTable::frames);
    const Frames& frames() const { return tables().table(kind_).frames; }

    TableKind kind_;
};

}  // namespace korvane
