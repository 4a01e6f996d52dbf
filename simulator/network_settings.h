#pragma once

#include <string>

#include "model/records.h"

namespace korvane {

// The device's network settings in one line.
std::string describe(const DeviceParamBlock& params);

}  // namespace korvane
