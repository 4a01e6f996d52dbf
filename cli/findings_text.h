#pragma once

#include <string>
#include <vector>

#include "review/findings.h"

namespace korvane::cli {

// A line for each, and how many there are of each severity; empty without any.
std::string findingsText(const std::vector<Finding>& findings);

bool hasErrors(const std::vector<Finding>& findings);

}  // namespace korvane::cli
