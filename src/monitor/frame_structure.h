#pragma once

#include <functional>
#include <string_view>

#include "device/status_records.h"

namespace korvane {

// Takes one line of a tree; depth 0 is a root. The text is valid during the call only.
using TreeLineSink = std::function<void(int depth, std::string_view text)>;

// Tells the frames of the multiplex with their sub-frames and input segments, in display order:
// each line is the child of the last one before it that is less deep. Counts beyond their arrays
// show what the arrays hold; the line of such a count shows the count as it came. (A full multiplex
// has 12,444 lines: they are told one by one because a text object for each would cost more than
// everything else here.)
void describeFrames(const DeviceStatusImage& status, const TreeLineSink& sink);

}  // namespace korvane
