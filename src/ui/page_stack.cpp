#include "ui/page_stack.h"

#include <stdexcept>

namespace korvane {

void PageStack::create(HWND parent) const {
    for (Page* page : pages_)
        if (!page->create(parent)) throw std::runtime_error("a page of the panel was refused");
}

void PageStack::show(std::size_t index) const {
    for (Page* page : pages_) page->show(false);
    if (index < pages_.size()) pages_[index]->show(true);
}

void PageStack::place(const RECT& area) const {
    for (Page* page : pages_)
        if (page->hwnd()) page->place(area);
}

}  // namespace korvane
