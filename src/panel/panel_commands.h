#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "device/device_manager.h"
#include "device/transfer_runner.h"
#include "model/prompts.h"

namespace korvane {

// What the panel's commands need of its pages.
class Pages {
  public:
    virtual ~Pages() = default;

    // Fills the input services, the control tables and the system configuration from the model.
    virtual void refresh() = 0;
    // Takes the pending edits of the control tables into the model. False when an entry was
    // refused; then a message has been shown.
    virtual bool commit() = 0;
    // Reads the system configuration's fields into the model. Non-zero when one is wrong; then a
    // message has been shown.
    virtual int check() = 0;
    // Both, of the pages that the operator has touched alone: the others leave the configuration as
    // it is, to the byte. False when an entry was refused.
    virtual bool commitChanges() = 0;
};

// The device and file commands of the main panel, each called when its button is pressed: guards,
// questions, the work and what is said about its outcome.
class PanelCommands {
  public:
    PanelCommands(DeviceManager& manager, Prompts& prompts, Pages& pages, TransferRunner& transfers)
        : manager_(manager), prompts_(prompts), pages_(pages), transfers_(transfers) {}

    void save();
    void load();
    void reboot();
    void restoreDefaults();
    void exportFile();
    void importFile();
    // Takes in what an earlier run of the panel left unsaved, or leaves it to the backups.
    void recoverWork();
    void discardWork();

  private:
    // False, after saying `refusal` with the time, when the last setting is too recent.
    bool settledSinceLastSetting(std::string_view refusal);
    void reportCommandFailure(int result);
    int importInto(const std::filesystem::path& path, bool withDeviceParams,
                   ChannelsLeftOut& leftOut);

    DeviceManager& manager_;
    Prompts& prompts_;
    Pages& pages_;
    TransferRunner& transfers_;
    std::uint32_t lastSettingMs_ = 0;  // on the clock of the device link
    bool defaultsRestored_ = false;    // by the last command
};

// What the About dialog says of the device. A version that holds anything but printable characters
// is shown as empty; one that fills its field needs no terminator.
std::string deviceVersionText(const ParamBlock264& params);

}  // namespace korvane
