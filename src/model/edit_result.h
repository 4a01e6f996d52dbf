#pragma once

namespace korvane::edit_result {

// What the editors' operations of ConfigModel return.
inline constexpr int done = 0;
inline constexpr int refused = -1;

}  // namespace korvane::edit_result
