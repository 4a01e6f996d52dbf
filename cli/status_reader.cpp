#include "cli/status_reader.h"

namespace korvane::cli {

int StatusReader::getAlarmBits(std::vector<bool>& out) const {
    std::uint8_t alarms = 0;
    if (!cache_.alarms(alarms)) return -1;
    for (int bit = 0; bit < 8; ++bit) out.push_back((alarms >> bit & 1) != 0);
    return 0;
}

}  // namespace korvane::cli
