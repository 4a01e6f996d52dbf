#pragma once

#include "device/device_manager.h"
#include "panel/control_tables_page.h"
#include "panel/page_set.h"
#include "panel/panel_commands.h"
#include "panel/panel_pages.h"
#include "panel/progress_dialog.h"
#include "ui/form_dialog.h"
#include "ui/page_stack.h"
#include "ui/window_prompts.h"

namespace korvane {

// The visible part of the panel: command buttons, page buttons, and the page shown.
class PanelBody : public Dialog {
  public:
    PanelBody(DeviceManager& manager, const PageMaker& makePages);

    // Fills the pages from the model.
    void refresh() { pages_.refresh(); }

  protected:
    bool onInit() override;
    bool onCommand(int id, int notification, HWND control) override;
    void onSize(int width, int height) override;
    void onTimer(UINT_PTR timer) override;
    void onDestroy() override;

  private:
    bool runCommand(int id);
    void tendWork();
    void showPage(std::size_t index);
    void placePages();
    void showAbout();

    DeviceManager& manager_;
    WindowPrompts prompts_;
    ModalTransferRunner transfers_;
    WindowFormRunner forms_;
    PageSet set_;
    ControlTablesPage controlTables_;
    PageStack stack_;
    PanelPages pages_;
    PanelCommands commands_;
};

}  // namespace korvane
