#pragma once

#include <string>

#include "forms/form.h"
#include "model/config_checks.h"
#include "model/config_model.h"

namespace korvane {

// The system configuration: the device's network settings, and the parameters of the multiplex
// output.
class SystemForm : public Form {
  public:
    // Of gather().
    enum Result : int {
        gathered = 0,
        wrongMac = -1,  // nothing stored
        // The network settings are stored, the output parameters are not.
        wrongPid = -2,
        wrongDeviceNumber = -3,
        wrongSystemRate = -4,
        unreadable = -5  // an entry is no number, or out of its range; nothing stored
    };

    // Both outlive the form.
    SystemForm(ConfigModel& model, Prompts& prompts) : model_(model), prompts_(prompts) {}

    int dialog() const override;
    void load() override;
    void describe(Fields& fields) override;
    void attach(FormExchange& exchange) override { exchange_ = &exchange; }
    int accept() override;

    // Takes what the controls show into the model. When the result is not `gathered`, a message has
    // been shown, the focus is on the entry concerned, and all entries are still there.
    int gather();

  private:
    int end(Result result, int control = 0);
    int storeNetworkSettings();
    int checkOutput();
    void storeOutput();

    ConfigModel& model_;
    Prompts& prompts_;
    FormExchange* exchange_ = nullptr;
    int result_ = unreadable;

    DeviceParamBlock params_{};
    std::string controlMac_, serviceMac_;
    // As entered; the block takes what it has room for.
    std::uint32_t pmsPid_ = 0, transmitDelay_ = 0, systemBitRate_ = 0;
    std::uint16_t deviceNumber_ = 0;
    std::uint8_t updateSequenceAdvance_ = 0, clockSource_ = 0;
    bool timeLabel_ = false, nextFrameParameters_ = false, isBackup_ = false;
    Ipv4 backupAddress_{};
    bool alarm1Pps_ = false, alarm10M_ = false, alarmTod_ = false;
};

}  // namespace korvane
