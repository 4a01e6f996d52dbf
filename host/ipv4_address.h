#pragma once

#include <string_view>

namespace korvane::host {

// Whether `text` is the dotted address of one device: four decimal numbers up to 255 without signs,
// blanks or leading zeros (some systems read those as octal), and neither a network of its own
// (0.x.x.x) nor a group of receivers (224.0.0.0 and above).
bool isDeviceAddress(std::string_view text);

}  // namespace korvane::host
