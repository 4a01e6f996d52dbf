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
    // nothing done, when it names none or is open already, or when an entry of the open one was
    // refused.
    bool select(std::size_t index) {
        if (index >= pages_.size() || index == selected_ || !commit()) return false;
        selected_ = index;
        refresh();
        return true;
    }
    void refresh() { pages_[selected_]->refresh(); }
    bool commit() { return pages_[selected_]->commit(); }
    bool changed() const { return pages_[selected_]->changed(); }

  private:
    std::vector<PageContent*> pages_;
    std::size_t selected_ = 0;
};

}  // namespace korvane
