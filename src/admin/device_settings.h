#pragma once

#include "admin/system_form.h"
#include "device/device_manager.h"

namespace korvane {

// What the settings button does: takes the entries, sends the network settings to the device and
// offers to restart it, for only then they are in force. The output parameters go with the next
// save of the configuration.
class DeviceSettings {
  public:
    // All of it outlives this object.
    DeviceSettings(SystemForm& form, DeviceManager& manager, Prompts& prompts)
        : form_(form), manager_(manager), prompts_(prompts) {}

    void apply();

  private:
    int send();
    void reboot();

    SystemForm& form_;
    DeviceManager& manager_;
    Prompts& prompts_;
};

}  // namespace korvane
