#pragma once

#include <string>

#include "model/configuration.h"

namespace korvane::cli {

// Writes what a device has into a file of its own in the folder, with the time ("2009-04-23
// 08:05:09") in its name: no copy ever replaces another one. The file's name, or a Failure.
std::string keepCopy(const Configuration& configuration, const std::string& folder,
                     const std::string& address, std::string time);

}  // namespace korvane::cli
