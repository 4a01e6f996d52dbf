#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvane::text_form {

// GBK as far as the converters of all systems agree on it: ASCII, the symbols and letters of
// GB 2312, and the ideographs. They differ in the rest: in what later standards moved or added, and
// in the areas for users' own characters.

// Whether a text holds nothing else, and no terminator.
bool isShared(std::string_view gbk);

// In UTF-8; nothing for a text that is not shared.
std::optional<std::string> sharedToUtf8(std::string_view gbk);

// The other way: nothing for a text that would not come back as it is.
std::optional<std::string> utf8ToShared(std::string_view utf8);

}  // namespace korvane::text_form
