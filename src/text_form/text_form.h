#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "model/configuration.h"
#include "text_form/json.h"
#include "text_form/problem.h"

// A configuration as JSON that people read, compare and keep under version control: see
// docs/text_form.md. Loss-free: what the fields do not reproduce of a configuration's bytes stands
// at the end of its text. The same text reads to the same bytes on each system.

namespace korvane::text_form {

// One value a line, UTF-8.
std::string write(const Configuration& configuration);

// Nothing, or what is wrong with the text: then the configuration is as it was.
std::optional<Problem> read(std::string_view text, Configuration& configuration);

// The same, before it is a text: what write() writes and read() finds.
Json toTree(const Configuration& configuration);
std::optional<Problem> fromTree(Json tree, Configuration& configuration);

// A tree as write() writes it.
std::string textOf(const Json& tree);

// The JSON Schema of all of that.
Json schema();

}  // namespace korvane::text_form
