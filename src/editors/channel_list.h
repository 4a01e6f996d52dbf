#pragma once

#include <utility>

#include "editors/editing.h"

namespace korvane {

// The input channels of one type.
class ChannelList : public RecordList {
  public:
    explicit ChannelList(const Editing& editing) : RecordList(editing) {}

    // Other columns and other rows; false when it is selected already.
    bool select(ChannelType type) { return std::exchange(type_, type) != type; }

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    bool add(int before) override;
    bool edit(int row) override;
    bool remove(int row) override;

  private:
    std::size_t typeIndex() const { return static_cast<std::size_t>(type_); }
    const FlatChannelList& channels() const { return editing_.model.channels(typeIndex()); }

    ChannelType type_ = ChannelType::Video;
};

}  // namespace korvane
