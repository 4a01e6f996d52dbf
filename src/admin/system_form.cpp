#include "admin/system_form.h"

#include <array>

#include "model/field_text.h"
#include "resources/ids.h"

namespace korvane {
namespace {

constexpr std::array<std::string_view, 3> advances = {"0", "1", "2"};
constexpr std::array<std::string_view, 2> clockSources = {"内部时钟", "外部时钟"};
constexpr std::string_view macName = "MAC地址";

enum AlarmSwitch : std::uint8_t { alwaysSet = 8, alarm1Pps = 16, alarm10M = 32, alarmTod = 64 };

}  // namespace

int SystemForm::dialog() const {
    return IDD_SYSTEM_PAGE;
}

void SystemForm::load() {
    params_ = model_.deviceParams();
    controlMac_ = fieldText(params_.controlMac);
    serviceMac_ = fieldText(params_.serviceMac);
    const OutputParamBlock& output = model_.tables().outputParams;
    pmsPid_ = output.pmsPid;
    deviceNumber_ = output.deviceNumber;
    timeLabel_ = output.timeLabelEnabled != 0;
    const bool hasItem = output.updateSequenceAdvance < advances.size();
    updateSequenceAdvance_ = hasItem ? output.updateSequenceAdvance : 0;
    nextFrameParameters_ = output.sendNextFrameParameters != 0;
    transmitDelay_ = output.transmitDelaySeconds;
    clockSource_ = output.clockSource != 0;
    isBackup_ = output.isBackup != 0;
    backupAddress_ = output.backupAddress;
    alarm1Pps_ = (output.alarmSwitches & alarm1Pps) != 0;
    alarm10M_ = (output.alarmSwitches & alarm10M) != 0;
    alarmTod_ = (output.alarmSwitches & alarmTod) != 0;
    systemBitRate_ = output.systemBitRate;
}

void SystemForm::describe(Fields& fields) {
    fields.address(IDC_CONTROL_ADDRESS, params_.controlPort.address);
    fields.address(IDC_CONTROL_SUBNET_MASK, params_.controlPort.subnetMask);
    fields.address(IDC_CONTROL_GATEWAY, params_.controlPort.gateway);
    fields.address(IDC_MANAGEMENT_HOST, params_.managementHost);
    fields.text(IDC_CONTROL_MAC, controlMac_, macName);
    fields.address(IDC_SERVICE_ADDRESS, params_.servicePort.address);
    fields.address(IDC_SERVICE_SUBNET_MASK, params_.servicePort.subnetMask);
    fields.address(IDC_SERVICE_GATEWAY, params_.servicePort.gateway);
    fields.text(IDC_SERVICE_MAC, serviceMac_, macName);
    fields.number(IDC_PMS_PID, pmsPid_);
    fields.number(IDC_DEVICE_NUMBER, deviceNumber_);
    fields.flag(IDC_TIME_LABEL, timeLabel_);
    fields.choice(IDC_UPDATE_ADVANCE, updateSequenceAdvance_, advances);
    fields.flag(IDC_NEXT_FRAME_PARAMETERS, nextFrameParameters_);
    fields.number(IDC_TRANSMIT_DELAY, transmitDelay_);
    fields.choice(IDC_CLOCK_SOURCE, clockSource_, clockSources);
    fields.flag(IDC_IS_BACKUP, isBackup_);
    fields.address(IDC_BACKUP_ADDRESS, backupAddress_);
    fields.flag(IDC_ALARM_1PPS, alarm1Pps_);
    fields.flag(IDC_ALARM_10M, alarm10M_);
    fields.flag(IDC_ALARM_TOD, alarmTod_);
    fields.kilobits(IDC_SYSTEM_RATE, systemBitRate_);
}

// From then on what was stored is what nobody has touched.
int SystemForm::gather() {
    result_ = unreadable;
    if (exchange_->accept()) exchange_->show();
    return result_;
}

int SystemForm::end(Result result, int control) {
    result_ = result;
    return control;
}

// The network settings stay stored when the output parameters are refused: they are sent for
// themselves.
int SystemForm::accept() {
    if (const int wrong = storeNetworkSettings()) return wrong;
    if (const int wrong = checkOutput()) return wrong;
    storeOutput();
    return end(gathered);
}

int SystemForm::storeNetworkSettings() {
    ConfigChecks checks(model_, prompts_);
    if (checks.checkMacAddress(controlMac_) != 0) return end(wrongMac, IDC_CONTROL_MAC);
    if (checks.checkMacAddress(serviceMac_) != 0) return end(wrongMac, IDC_SERVICE_MAC);
    enterText(controlMac_, params_.controlMac);
    enterText(serviceMac_, params_.serviceMac);
    model_.setDeviceParams(params_);
    return 0;
}

int SystemForm::checkOutput() {
    ConfigChecks checks(model_, prompts_);
    if (checks.checkPid(pmsPid_) != 0) return end(wrongPid, IDC_PMS_PID);
    if (checks.checkDeviceNumber(deviceNumber_) != 0)
        return end(wrongDeviceNumber, IDC_DEVICE_NUMBER);
    if (checks.checkSystemBitRate(systemBitRate_) != 0)
        return end(wrongSystemRate, IDC_SYSTEM_RATE);
    return 0;
}

void SystemForm::storeOutput() {
    OutputParamBlock output = model_.tables().outputParams;
    output.pmsPid = static_cast<std::uint16_t>(pmsPid_);
    output.deviceNumber = deviceNumber_;
    output.timeLabelEnabled = timeLabel_;
    output.updateSequenceAdvance = updateSequenceAdvance_;
    output.sendNextFrameParameters = nextFrameParameters_;
    output.transmitDelaySeconds = static_cast<std::uint8_t>(transmitDelay_);
    output.clockSource = clockSource_;
    output.isBackup = isBackup_;
    output.backupAddress = backupAddress_;
    output.alarmSwitches =
        static_cast<std::uint8_t>(alwaysSet | (alarm1Pps_ ? alarm1Pps : 0) |
                                  (alarm10M_ ? alarm10M : 0) | (alarmTod_ ? alarmTod : 0));
    output.systemBitRate = systemBitRate_;
    model_.setOutputParams(output);
}

}  // namespace korvane
