#pragma once

#include <optional>
#include <string>

#include "model/records.h"

// A device's own parameters by the names that they have in the text form.

namespace korvane::cli {

// "controlPort.address=192.168.1.20", a line each.
std::string paramsText(const DeviceParamBlock& params);

// Changes the one that "controlPort.address=192.168.1.21" names. Nothing, or what is wrong; then
// nothing was changed.
std::optional<std::string> setParam(DeviceParamBlock& params, const std::string& assignment);

}  // namespace korvane::cli
