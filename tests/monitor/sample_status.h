#pragma once

#include <cstring>
#include <memory>
#include <vector>

#include "monitor/frame_structure.h"

namespace korvane::test {

using StatusImage = std::unique_ptr<DeviceStatusImage>;  // too large for a stack

// Two frames: the first with the slots 3, 7 and 39 and two sub-frames, of which the first has a
// video and an audio segment and the second none; the second frame has nothing in it.
inline StatusImage smallMultiplex() {
    auto status = std::make_unique<DeviceStatusImage>();
    status->bytesSent = 4000000000u;
    status->streamRate = 4379999;
    status->systemRate = 1000;
    status->frameCount = 2;
    status->frames[0] = {69120, 60826, 5, {}, 3, {3, 7, 39}, 2, 0, {}};
    auto& subFrames = status->frames[0].subFrames;
    subFrames[0] = {1, 101, 50784, 450000, {}, 2, {{{223, 263140, 347, 0}, {106, 39432, 58, 0}}}};
    subFrames[1] = {2, 65535, 900, 8000, {}, 0, {}};
    status->frames[1].id = 300;
    return status;
}

// What the tree shows: each line behind as many dots as it is deep.
inline std::vector<std::string> outline(const DeviceStatusImage& status) {
    std::vector<std::string> lines;
    describeFrames(status, [&lines](int depth, std::string_view text) {
        lines.push_back(std::string(static_cast<std::size_t>(depth), '.') + std::string(text));
    });
    return lines;
}

// All counts, and all else, as large as they can be.
inline StatusImage lyingStatus() {
    auto status = std::make_unique<DeviceStatusImage>();
    std::memset(status.get(), 0xFF, sizeof *status);
    return status;
}

}  // namespace korvane::test
