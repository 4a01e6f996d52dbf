#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "ui/edit_list_view.h"

namespace korvane {

// The lists of one dialog, which passes on what it hears.
class EditListViews {
  public:
    // Before the window is made.
    void add(EditList& list, Prompts& prompts, int control, const ListMenu& menu,
             std::function<void()> changed = {}) {
        lists_.emplace_back(list, prompts, control, menu, std::move(changed));
    }
    void create(HWND dialog);
    void refill();
    bool empty() const { return lists_.empty(); }
    EditListView& last() { return lists_.back(); }

    // True, or a result, when it was for one of them.
    bool onCommand(int id);
    std::optional<LRESULT> onNotify(const NMHDR& header);
    std::optional<INT_PTR> onMessage(UINT message, WPARAM wParam, LPARAM lParam);

  private:
    std::vector<EditListView> lists_;
};

}  // namespace korvane
