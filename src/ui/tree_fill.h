#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ui/controls.h"

namespace korvane {

// Replaces the content of a tree line by line, fully expanded. The tree does not draw while this
// object lives, so the change does not flicker. Neither selection nor scrolling is kept.
class TreeFill {
  public:
    explicit TreeFill(Tree tree);
    ~TreeFill();
    TreeFill(const TreeFill&) = delete;
    TreeFill& operator=(const TreeFill&) = delete;

    // A line at most one deeper than the one before; depth 0 is a root. UTF-8.
    void add(int depth, std::string_view text);

  private:
    void insert(bool hasChildren);

    Tree tree_;
    std::vector<HTREEITEM> path_;  // the last item of each depth
    // A line waits for the next one, which tells whether it has children.
    int depth_ = -1;
    std::wstring text_;
};

}  // namespace korvane
