#include "editors/frequency_fields.h"

#include "model/frequency_text.h"
#include "resources/ids.h"

namespace korvane {

void describeFrequency(Fields& fields, FrequencyPoint& point) {
    fields.number(IDC_CHANNEL_NUMBER, point.channelNumber);
    fields.megahertz(IDC_CENTRE_FREQUENCY, point.centreFrequency);
    fields.choice(IDC_BANDWIDTH, point.bandwidth, bandwidthNames);
}

}  // namespace korvane
