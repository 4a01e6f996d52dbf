#pragma once

#include <string>

#include "device/status_source.h"

// One reading of a device's status, as the live views have it, for people and for tables.

namespace korvane::cli {

std::string statusText(const StatusSource& source, const std::string& time,
                       const std::string& address);

// The first line of a table of readings, and one of its rows. Of a lost link nothing is known but
// that.
std::string statusTableHead();
std::string statusTableRow(const StatusSource& source, const std::string& time);

}  // namespace korvane::cli
