#pragma once

#include <cstddef>
#include <vector>

#include "ui/page_content.h"

namespace korvane {

// The pages of the control tables, of which one is open at a time: only that one holds edits that
// the model does not have yet, and only that one is up to date.
class TablePages {
  public:
    // The pages are someone else's and outlive this object. The first one is open.
    explicit TablePages(std::vector<PageContent*> pages) : pages_(std::move(pages)) {}

    std::size_t selected() const { return selected_; }

    // Takes the open page's edits into the model and opens another one, filled from it. False, and
    // nothing done, when it names none or is open already.
    bool select(std::size_t index) {
        if (index >= pages_.size() || index == selected_) return false;
        commit();
        selected_ = index;
        refresh();
        return true;
    }
    void refresh() { pages_[selected_]->refresh(); }
    void commit() { pages_[selected_]->commit(); }

  private:
    std::vector<PageContent*> pages_;
    std::size_t selected_ = 0;
};

}  // namespace korvane
