#pragma once

#include "forms/edit_list.h"

namespace korvane {

class FrameForm;

// The time slots of the frame that a form edits: configured all at once, by their number.
class SlotList : public EditList {
  public:
    explicit SlotList(FrameForm& frame) : frame_(frame) {}

    std::vector<ListColumn> columns() const override { return {{"时隙号", 80}}; }
    std::vector<ListRow> rows() const override;
    Offer offer(int) const override { return {true, false, false}; }
    std::string_view addLabel() const override { return "配置时隙"; }
    bool add(int before) override;
    bool edit(int) override { return false; }
    bool open(int) override { return add(noRow); }
    bool remove(int) override { return false; }

  private:
    FrameForm& frame_;
};

// Its sub-frames. What is done to them is the frame's once its form is accepted.
class SubFrameList : public EditList {
  public:
    explicit SubFrameList(FrameForm& frame) : frame_(frame) {}

    std::vector<ListColumn> columns() const override {
        return {{"复用子帧号", 80}, {"业务标识", 80}};
    }
    std::vector<ListRow> rows() const override;
    // Nothing for the control tables' own frame, whose sub-frames can still be opened.
    Offer offer(int row) const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool open(int row) override { return row != noRow && edit(row); }
    bool remove(int row) override;

  private:
    FrameForm& frame_;
};

}  // namespace korvane
