#pragma once

#include <string>

#include "model/configuration.h"

namespace korvane {

// What a configuration holds, in lines that a person reads: its network, its frames with the use of
// their capacity, their services, and its input channels.
std::string summaryOf(const Configuration& configuration);

}  // namespace korvane
