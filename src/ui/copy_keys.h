#pragma once

#include "ui/list_view.h"

namespace korvane {

// What a control does with a key that it told its dialog of. True when the key meant this.
// Ctrl+A selects all rows, Ctrl+C copies the selected ones: cells with tabs between, one row a
// line.
bool selectOrCopyRows(const ListView& list, WORD key);
// Ctrl+C copies the selected item and all below it, each line behind as many tabs as it is deep.
bool copyBranch(const Tree& tree, WORD key);

}  // namespace korvane
