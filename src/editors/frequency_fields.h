#pragma once

#include "forms/fields.h"
#include "model/records.h"

namespace korvane {

// The fields of one frequency, the network's own or another one.
void describeFrequency(Fields& fields, FrequencyPoint& point);

}  // namespace korvane
