#pragma once

#include <array>
#include <cstddef>

#include "panel/panel_commands.h"
#include "ui/page_content.h"

namespace korvane {

// The panel's four pages, as its commands know them.
class PanelPages : public Pages {
  public:
    enum Index : std::size_t { InputChannels, ControlTables, Monitor, System, count };

    // The pages, in this order, are someone else's and outlive this object.
    explicit PanelPages(const std::array<PageContent*, count>& pages) : pages_(pages) {}

    // The monitor shows nothing of the model.
    void refresh() override {
        for (const auto index : {InputChannels, ControlTables, System}) pages_[index]->refresh();
    }
    bool commit() override { return pages_[ControlTables]->commit(); }
    int check() override { return pages_[System]->check(); }
    bool commitChanges() override {
        return (!pages_[ControlTables]->changed() || commit()) &&
               (!pages_[System]->changed() || check() == 0);
    }

  private:
    std::array<PageContent*, count> pages_;
};

}  // namespace korvane
