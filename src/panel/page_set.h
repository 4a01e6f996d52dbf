#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "device/device_manager.h"
#include "device/transfer_runner.h"
#include "forms/form.h"
#include "forms/revealing_prompts.h"
#include "ui/page.h"

namespace korvane {

// The panel's pages, and those of the control tables in the order of their list.
struct PageSet {
    std::unique_ptr<Page> inputChannels, monitor, system;
    std::vector<std::unique_ptr<Page>> tables;
};

// What the pages work with. The last two bring the page of the control tables, or that of the
// system configuration, to the front.
struct PageSurroundings {
    DeviceManager& manager;
    Prompts& prompts;
    FormRunner& forms;
    TransferRunner& transfers;
    RevealingPrompts::Reveal revealTables, revealSystem;
};

using PageMaker = std::function<PageSet(const PageSurroundings&)>;

// The product's own.
PageSet makePages(const PageSurroundings& surroundings);

}  // namespace korvane
