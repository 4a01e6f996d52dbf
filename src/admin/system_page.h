#pragma once

#include "admin/device_settings.h"
#include "admin/firmware_upgrade.h"
#include "forms/revealing_prompts.h"
#include "ui/form_page.h"

namespace korvane {

struct SystemPageParts {
    RevealingPrompts revealing;
    SystemForm form;
    DeviceSettings settings;
    FirmwareUpgrade upgrade;
};

// The page of the system configuration: settings of the device and its firmware.
class SystemPage : private SystemPageParts, public FormPage {
  public:
    SystemPage(DeviceManager& manager, Prompts& prompts, TransferRunner& transfers,
               RevealingPrompts::Reveal reveal);

    int check() override { return form.gather(); }

  protected:
    bool onCommand(int id, int notification, HWND control) override;
};

}  // namespace korvane
