#pragma once

#include <string_view>

namespace korvane::host {

enum class Channel { output, error };

// Writes UTF-8 text to the standard stream, or to the console that this windowed program was
// started from. False when there is neither.
bool writeConsole(Channel channel, std::string_view text);

}  // namespace korvane::host
