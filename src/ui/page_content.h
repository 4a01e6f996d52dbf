#pragma once

namespace korvane {

// What the panel asks of a page, whatever the page looks like. One that has nothing to say to a
// call leaves it.
class PageContent {
  public:
    virtual ~PageContent() = default;

    // Fills the page from the model.
    virtual void refresh() {}
    // Takes pending edits into the model. False when an entry was refused: then a message has been
    // shown, and the entries are still there.
    virtual bool commit() { return true; }
    // Whether something was entered since the page was filled.
    virtual bool changed() const { return false; }
    // Reads the page's fields into the model. Non-zero when a field is wrong: then the page has
    // shown its own message.
    virtual int check() { return 0; }
};

}  // namespace korvane
