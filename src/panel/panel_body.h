#pragma once

#include <array>
#include <memory>

#include "device/device_manager.h"
#include "panel/panel_commands.h"
#include "panel/progress_dialog.h"
#include "ui/page.h"
#include "ui/window_prompts.h"

namespace korvane {

// The visible part of the panel: command buttons, page buttons, and the page shown.
class PanelBody : public Dialog, private Pages {
  public:
    explicit PanelBody(DeviceManager& manager);

    void refresh() override;

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onSize(int width, int height) override;

  private:
    enum PageIndex : std::size_t { InputChannels, ControlTables, Monitor, System, pageCount };

    void commit() override { pages_[ControlTables]->commit(); }
    int check() override { return pages_[System]->check(); }

    bool runCommand(int id);
    void showPage(std::size_t index);
    void placePages();
    void showAbout();

    DeviceManager& manager_;
    WindowPrompts prompts_;
    ModalTransferRunner transfers_;
    PanelCommands commands_;
    std::array<std::unique_ptr<Page>, pageCount> pages_;
};

}  // namespace korvane
