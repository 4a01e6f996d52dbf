#pragma once

#include <nlohmann/json.hpp>

namespace korvane::text_form {

// Keys keep the order in which they are written.
using Json = nlohmann::ordered_json;

}  // namespace korvane::text_form
