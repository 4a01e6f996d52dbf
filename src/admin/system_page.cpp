#include "admin/system_page.h"

#include "resources/ids.h"
#include "text/text.h"
#include "ui/controls.h"

namespace korvane {

SystemPage::SystemPage(DeviceManager& manager, Prompts& prompts, TransferRunner& transfers,
                       RevealingPrompts::Reveal reveal)
    : SystemPageParts{{prompts, std::move(reveal)},
                      {manager.model(), revealing},
                      {form, manager, revealing},
                      {manager, revealing, transfers}},
      FormPage(form, revealing) {}

bool SystemPage::onCommand(int id, int notification, HWND sender) {
    switch (notification == BN_CLICKED ? id : 0) {
        case IDC_APPLY_SETTINGS:
            settings.apply();
            return true;
        case IDC_BROWSE_FIRMWARE:
            if (upgrade.browse())
                control<Control>(IDC_FIRMWARE_FILE).setText(toUtf8(upgrade.file().wstring()));
            return true;
        case IDC_UPGRADE:
            upgrade.run();
            return true;
        default:
            return FormPage::onCommand(id, notification, sender);
    }
}

}  // namespace korvane
