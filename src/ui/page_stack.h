#pragma once

#include <vector>

#include "ui/page.h"

namespace korvane {

// Pages that share one place, of which one is shown at a time.
class PageStack {
  public:
    // The pages are someone else's and outlive the stack.
    explicit PageStack(std::vector<Page*> pages) : pages_(std::move(pages)) {}

    // Makes all of them, hidden. Throws std::runtime_error when one is refused.
    void create(HWND parent) const;
    // Shows this page alone; an index that names none hides all.
    void show(std::size_t index) const;
    // In pixels of the parent's client area.
    void place(const RECT& area) const;

  private:
    std::vector<Page*> pages_;
};

}  // namespace korvane
