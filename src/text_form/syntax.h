#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "text_form/json.h"
#include "text_form/problem.h"

namespace korvane::text_form {

// What a text may have at most. A configuration that uses every slot with noise stays within half.
namespace text_limits {
inline constexpr std::size_t bytes = std::size_t{32} << 20;
inline constexpr std::size_t values = 1'000'000;
inline constexpr std::size_t depth = 16;
inline constexpr std::size_t keys = 64;  // of one object
}  // namespace text_limits

// The tree of a JSON text. Throws a Problem for what is none, for more than these limits, and for a
// key that stands twice in one object.
Json parseTree(std::string_view text);

// A key that anybody may have written, as a message shows it: short, and without control
// characters.
std::string shownKey(const std::string& key);

}  // namespace korvane::text_form
