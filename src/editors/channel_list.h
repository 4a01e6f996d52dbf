#pragma once

#include <utility>

#include "editors/editing.h"
#include "forms/edit_list.h"

namespace korvane {

// The input channels of one type.
class ChannelList : public EditList {
  public:
    explicit ChannelList(const Editing& editing) : editing_(editing) {}

    // Other columns and other rows; false when it is selected already.
    bool select(ChannelType type) { return std::exchange(type_, type) != type; }

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    ConfigChecks checks() const { return {editing_.model, editing_.prompts}; }
    std::size_t typeIndex() const { return static_cast<std::size_t>(type_); }
    const FlatChannelList& channels() const { return editing_.model.channels(typeIndex()); }

    Editing editing_;
    ChannelType type_ = ChannelType::Video;
};

}  // namespace korvane
