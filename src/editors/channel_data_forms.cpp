#include "editors/channel_data_forms.h"

#include "resources/ids.h"

namespace korvane {

DataChannelForm::DataChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew)
    : ChannelForm(checks, record, isNew) {
    constexpr std::uint8_t usualReceiveMode = 2;
    if (isNew) record_.receiveMode = usualReceiveMode;
}

int GeneralChannelForm::dialog() const {
    return IDD_GENERAL_CHANNEL;
}

int GeneralChannelForm::addressControl() const {
    return IDC_GENERAL_CHANNEL_ADDRESS;
}

void GeneralChannelForm::describeOthers(Fields& fields) {
    fields.flag(IDC_RECEIVE_UDP, udp_);
}

ConditionalChannelForm::ConditionalChannelForm(ConfigChecks checks,
                                               const InputChannelRecord& record, bool isNew)
    : DataChannelForm(checks, record, isNew) {
    constexpr std::uint32_t proposedIntervalMs = 1000;
    if (isNew && is(ChannelType::Ecm)) record_.maxSendIntervalMs = proposedIntervalMs;
}

int ConditionalChannelForm::dialog() const {
    return IDD_CONDITIONAL_CHANNEL;
}

std::span<const int> ConditionalChannelForm::hidden() const {
    static constexpr int sendInterval[] = {IDC_SEND_INTERVAL_LABEL, IDC_SEND_INTERVAL};
    return is(ChannelType::Emm) ? std::span<const int>(sendInterval) : std::span<const int>();
}

void ConditionalChannelForm::describeOthers(Fields& fields) {
    fields.number(IDC_DATA_UNIT_TYPE, record_.dataUnitType);
    fields.number(IDC_SEND_INTERVAL, record_.maxSendIntervalMs);
}

}  // namespace korvane
