#pragma once

#include <string>
#include <string_view>

namespace korvane {

// Texts of the logic are UTF-8, those of windows UTF-16, those inside records GBK (code page 936).
// What has no counterpart becomes the replacement character, in GBK '?'; nothing throws but for
// lack of memory.
std::wstring toWide(std::string_view utf8);
// Into a text whose room is used again: for many in a row.
void toWide(std::string_view utf8, std::wstring& wide);
std::string toUtf8(std::wstring_view wide);

// From a text that should be UTF-8; one that is not (an exception's, out of a system library) is
// taken to be in the code page of this system.
std::wstring anyToWide(std::string_view text);
std::string anyToGbk(std::string_view text);

// From the code page of this system, which a host's narrow texts are written in.
std::string systemToUtf8(std::string_view narrow);

}  // namespace korvane
