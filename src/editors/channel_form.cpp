#include "editors/channel_form.h"

#include "editors/channel_data_forms.h"
#include "editors/channel_stream_forms.h"
#include "model/channel_text.h"
#include "resources/ids.h"

namespace korvane {
namespace {

std::unique_ptr<ChannelForm> makeForm(ConfigChecks checks, const InputChannelRecord& record,
                                      bool isNew) {
    switch (static_cast<ChannelType>(record.type)) {
        case ChannelType::Video:
            return std::make_unique<VideoChannelForm>(checks, record, isNew);
        case ChannelType::Audio:
        case ChannelType::Dra:
            return std::make_unique<AudioChannelForm>(checks, record, isNew);
        case ChannelType::Ecm:
        case ChannelType::Emm:
            return std::make_unique<ConditionalChannelForm>(checks, record, isNew);
        default:
            return std::make_unique<GeneralChannelForm>(checks, record, isNew);
    }
}

}  // namespace

ChannelForm::ChannelForm(ConfigChecks checks, const InputChannelRecord& record, bool isNew)
    : record_(record),
      checks_(checks),
      edited_(isNew ? std::nullopt : std::optional(record)),
      title_(std::string(channelTypeNames.at(record.type)) + "通道参数配置") {}

int ChannelForm::addressControl() const {
    return IDC_CHANNEL_ADDRESS;
}

void ChannelForm::describe(Fields& fields) {
    fields.address(addressControl(), record_.address);
    fields.number(IDC_PORT, record_.port);
    describeOthers(fields);
}

int ChannelForm::accept() {
    constexpr bool multicastOnly = true;
    if (hasOtherAddress() &&
        checks_.checkInputChannelAddress(record_.address, record_.port, multicastOnly) != 0)
        return addressControl();
    store();
    return 0;
}

// The edited channel is among those that an address is compared with.
bool ChannelForm::hasOtherAddress() const {
    return isNew() || edited_->address != record_.address || edited_->port != record_.port;
}

std::unique_ptr<ChannelForm> newChannelForm(ConfigChecks checks, ChannelType type) {
    InputChannelRecord record{};
    record.type = static_cast<std::uint8_t>(type);
    return makeForm(checks, record, true);
}

std::unique_ptr<ChannelForm> editedChannelForm(ConfigChecks checks,
                                               const InputChannelRecord& record) {
    return makeForm(checks, record, false);
}

}  // namespace korvane
