#pragma once

#include <string>
#include <vector>

#include "device/status_records.h"

namespace korvane {

// One row for each sub-frame, in the order of the frames: row number from 0, service id, length in
// bytes, then rate in kbit/s and packet count of the video, audio and data segment. Always nine
// cells: those of a segment that is not there are empty.
std::vector<std::vector<std::string>> serviceRows(const DeviceStatusImage& status);

}  // namespace korvane
