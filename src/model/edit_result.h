#pragma once

namespace korvane::edit_result {

// What the editors' operations of ConfigModel return.
inline constexpr int done = 0;
inline constexpr int refused = -1;   // no such record, or a limit of its list
inline constexpr int csctFull = -2;  // the services to announce are more than the CSCT holds

}  // namespace korvane::edit_result
