#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace korvane::review {

// Of something in a list: its places before and after.
struct Move {
    std::size_t from, to;
};

// Of moves in the order of `from`: which of the things can stay while the others move in between,
// so that in the end all are where they are to be. As many stay as can; of equally many, rather
// those whose place has the same number again.
std::vector<bool> staying(std::span<const Move> moves);

}  // namespace korvane::review
