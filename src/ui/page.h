#pragma once

#include "ui/dialog.h"

namespace korvane {

// A borderless child dialog that shows part of the configuration. The panel calls these; a page
// that has nothing to say to one of them leaves it.
class Page : public Dialog {
  public:
    using Dialog::Dialog;

    // Fills the page from the model.
    virtual void refresh() {}
    // Takes pending edits into the model.
    virtual void commit() {}
    // Reads the page's fields into the model. Non-zero when a field is wrong: then the page has
    // shown its own message.
    virtual int check() { return 0; }
};

}  // namespace korvane
