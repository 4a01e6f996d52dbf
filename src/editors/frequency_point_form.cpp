#include "editors/frequency_point_form.h"

#include "editors/frequency_fields.h"
#include "resources/ids.h"

namespace korvane {

FrequencyPointForm::FrequencyPointForm(ConfigChecks checks,
                                       const std::optional<FrequencyPoint>& edited)
    : checks_(checks), edited_(edited), point_(edited.value_or(FrequencyPoint{})) {}

int FrequencyPointForm::dialog() const {
    return IDD_FREQUENCY_POINT;
}

void FrequencyPointForm::describe(Fields& fields) {
    describeFrequency(fields, point_);
}

// The table holds the edited point itself, so a channel that stayed is no news.
int FrequencyPointForm::accept() {
    const bool newChannel = !edited_ || edited_->channelNumber != point_.channelNumber;
    return newChannel && checks_.checkFrequencyPoint(point_) != 0 ? IDC_CHANNEL_NUMBER : 0;
}

}  // namespace korvane
