#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

namespace korvane {

// A text in a fixed field: up to the terminator or the field's end.
template <std::size_t Size>
std::string fieldText(const std::array<char, Size>& field) {
    return {field.begin(), std::ranges::find(field, '\0')};
}

// Makes the field hold as much of the text as fits before a terminator, and zeros behind it. The
// text that it holds already leaves it as it is, to the last byte.
template <std::size_t Size>
void enterText(std::string_view text, std::array<char, Size>& field) {
    if (text == fieldText(field)) return;
    field = {};
    std::copy_n(text.begin(), std::min(text.size(), Size - 1), field.begin());
}

}  // namespace korvane
