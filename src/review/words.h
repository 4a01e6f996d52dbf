#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "text_form/json.h"

// The text form's keys and values in the words of a sentence.

namespace korvane::review {

using text_form::Json;

// "rsCodeRate" is "RS code rate".
std::string wordsOf(std::string_view key);

// What a value counts, with a space before it; empty for most.
std::string unitOf(std::string_view key);

// A value that is neither a record nor a list of them; null stands for one that is absent. No
// character of it moves a terminal's cursor.
std::string valueText(const Json& value);

// A text as valueText() has it.
std::string shownText(std::string_view utf8);

// "0-7, 9"; "none".
std::string rangesText(std::span<const std::uint8_t> numbers);

}  // namespace korvane::review
