#pragma once

namespace korvane {

// What the panel asks of a page, whatever the page looks like. One that has nothing to say to a
// call leaves it.
class PageContent {
  public:
    virtual ~PageContent() = default;

    // Fills the page from the model.
    virtual void refresh() {}
    // Takes pending edits into the model.
    virtual void commit() {}
    // Reads the page's fields into the model. Non-zero when a field is wrong: then the page has
    // shown its own message.
    virtual int check() { return 0; }
};

}  // namespace korvane
