#pragma once

#include "admin/system_form.h"
#include "device/device_client.h"

namespace korvane {

// What the settings button does: takes the entries, sends the network settings to the device and
// offers to restart it, for only then they are in force. The output parameters go with the next
// save of the configuration.
class DeviceSettings {
  public:
    // All of it outlives this object.
    DeviceSettings(SystemForm& form, const ConfigModel& model, DeviceClient& client,
                   Prompts& prompts)
        : form_(form), model_(model), client_(client), prompts_(prompts) {}

    void apply();

  private:
    int send();
    void reboot();

    SystemForm& form_;
    const ConfigModel& model_;
    DeviceClient& client_;
    Prompts& prompts_;
};

}  // namespace korvane
