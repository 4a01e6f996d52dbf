#pragma once

#include <string>
#include <vector>

#include "model/configuration.h"

namespace korvane {

// What a person is told of how b differs from a, a line each; none when they are equal, byte for
// byte. Records are matched by what they are called, not by where they stand:
//
//     frame 3, service 101: bandwidth 480000 → 512000 bit/s
//     frame 3 moved from place 2 to 4
//     input channel 28 (video, 239.1.10.9:5016) added
std::vector<std::string> differencesOf(const Configuration& a, const Configuration& b);

// The JSON Patch (RFC 6902) that turns a's text form into b's, the order of its keys too.
std::string patchOf(const Configuration& a, const Configuration& b);

}  // namespace korvane
