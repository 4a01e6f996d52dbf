#include "ui/tree_fill.h"

#include "text/text.h"

namespace korvane {

TreeFill::TreeFill(Tree tree) : tree_(tree) {
    tree_.holdDrawing();
    tree_.clear();
}

TreeFill::~TreeFill() {
    if (depth_ >= 0) insert(false);
    tree_.resumeDrawing();
}

void TreeFill::add(int depth, std::string_view text) {
    if (depth_ >= 0) insert(depth > depth_);
    depth_ = depth;
    toWide(text, text_);
}

// An item that is inserted as an expanded one needs no TVM_EXPAND, after which the control would
// lay out everything below it anew.
void TreeFill::insert(bool hasChildren) {
    path_.resize(static_cast<std::size_t>(depth_) + 1);
    TVINSERTSTRUCTW place{};
    place.hParent = depth_ > 0 ? path_[static_cast<std::size_t>(depth_) - 1] : TVI_ROOT;
    place.hInsertAfter = TVI_LAST;
    place.item.mask = TVIF_TEXT | TVIF_STATE;
    place.item.state = hasChildren ? TVIS_EXPANDED : 0;
    place.item.stateMask = TVIS_EXPANDED;
    place.item.pszText = text_.data();
    path_.back() = tree_.insert(place);
}

}  // namespace korvane
