#pragma once

#include <functional>
#include <span>

#include "editors/editing.h"
#include "forms/edit_list.h"

namespace korvane {

using Components = std::vector<InputChannelRecord>;

// What the operator is told when a list, or a service, would get more components than it may have.
inline constexpr std::string_view tooManyComponents = "已达最大组件数(8)";

// The components of one type of the service that is edited. They are chosen from channels that are
// there; of themselves they are not edited.
class ComponentList : public EditList {
  public:
    // Of `all` it takes those of its type.
    ComponentList(const Editing& editing, ChannelType type, std::span<const InputChannelRecord> all,
                  std::function<Components()> candidates);

    const Components& components() const { return components_; }

    std::vector<ListColumn> columns() const override;
    std::vector<ListRow> rows() const override;
    Offer offer(int row) const override { return {true, false, row != noRow}; }
    bool add(int before) override;
    bool edit(int) override { return false; }
    bool remove(int row) override;
    bool asksBeforeRemoval() const override { return false; }

  private:
    Components offered() const;
    bool append(const Components& chosen);

    Editing editing_;
    ChannelType type_;
    std::function<Components()> candidates_;
    Components components_;
};

}  // namespace korvane
