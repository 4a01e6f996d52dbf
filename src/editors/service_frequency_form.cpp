#include "editors/service_frequency_form.h"

#include "resources/ids.h"

namespace korvane {

ServiceFrequencyForm::ServiceFrequencyForm(ConfigChecks checks, TableKind kind,
                                           const std::optional<ServiceFrequencyEntry>& edited)
    : checks_(checks),
      kind_(kind),
      edited_(edited),
      entry_(edited.value_or(ServiceFrequencyEntry{})),
      serviceId_(entry_.serviceId) {}

int ServiceFrequencyForm::dialog() const {
    return IDD_SERVICE_FREQUENCY;
}

void ServiceFrequencyForm::describe(Fields& fields) {
    fields.number(IDC_SERVICE_ID, serviceId_);
    fields.number(IDC_CHANNEL_NUMBER, entry_.channelNumber);
}

// The table holds the edited pair itself, so one that stayed is no news.
int ServiceFrequencyForm::accept() {
    entry_.serviceId = static_cast<std::uint16_t>(serviceId_);
    if (edited_ == entry_) return 0;
    const int result =
        checks_.checkServiceFrequencyPair(entry_.serviceId, entry_.channelNumber, kind_);
    return result == 0 ? 0 : IDC_SERVICE_ID;
}

}  // namespace korvane
