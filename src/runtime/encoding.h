#pragma once

#include <string>
#include <string_view>

namespace nox_pub::mswin {

// Texts are UTF-8. One that is not (an exception's, out of a system library) is taken to be in the
// code page of this system. What has no counterpart becomes a replacement character.
std::wstring wideFromText(std::string_view text);

// As code page 936, in which this product leaves its text files.
std::string gbkFromText(std::string_view text);

}  // namespace nox_pub::mswin
