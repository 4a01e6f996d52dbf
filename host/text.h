#pragma once

#include <string>
#include <string_view>

namespace korvane::host {

// Between the UTF-8 of this program's texts and the UTF-16 of the system's interfaces.
// What is not valid in the source becomes U+FFFD; nothing fails.
std::wstring wide(std::string_view utf8);
std::string utf8(std::wstring_view wide);

}  // namespace korvane::host
