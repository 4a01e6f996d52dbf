#pragma once

#include <cstdint>
#include <span>

#include "text_form/json.h"

namespace korvane::text_form {

// What of some bytes is not as the fields have it: [{"offset": n, "bytes": hexadecimal}, ...]. Both
// are equally long.
Json remainderOf(std::span<const std::uint8_t> bytes, std::span<const std::uint8_t> fields);

// Puts a remainder back over what the fields gave. Throws a Problem for what is none.
void applyRemainder(const Json& remainder, std::span<std::uint8_t> bytes);

Json remainderSchema();

}  // namespace korvane::text_form
