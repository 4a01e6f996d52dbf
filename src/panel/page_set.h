#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "device/status_source.h"
#include "editors/editing.h"
#include "forms/revealing_prompts.h"
#include "ui/page.h"

namespace korvane {

// The panel's pages, and those of the control tables in the order of their list.
struct PageSet {
    std::unique_ptr<Page> inputChannels, monitor, system;
    std::vector<std::unique_ptr<Page>> tables;
};

// What the pages work with. `revealTables` brings the page of the control tables to the front.
struct PageSurroundings {
    Editing editing;
    const StatusSource& status;
    RevealingPrompts::Reveal revealTables;
};

using PageMaker = std::function<PageSet(const PageSurroundings&)>;

// The product's own.
PageSet makePages(const PageSurroundings& surroundings);

}  // namespace korvane
