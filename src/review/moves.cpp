#include "review/moves.h"

#include <algorithm>

namespace korvane::review {
namespace {

constexpr std::size_t none = static_cast<std::size_t>(-1);

// A row of things that ascend: what it is worth, and the one before its last.
struct Row {
    std::size_t worth = 0, before = none;
};

Row bestRowTo(std::size_t last, std::span<const Move> moves, const std::vector<Row>& rows) {
    Row best;
    for (std::size_t i = 0; i < last; ++i)
        if (moves[i].to < moves[last].to && rows[i].worth > best.worth) best = {rows[i].worth, i};
    best.worth += moves.size() + 1 + (moves[last].from == moves[last].to);
    return best;
}

std::vector<bool> longest(std::span<const Move> moves) {
    std::vector<Row> rows;
    for (std::size_t i = 0; i < moves.size(); ++i) rows.push_back(bestRowTo(i, moves, rows));
    std::vector<bool> stays(moves.size());
    const auto end = std::ranges::max_element(rows, {}, &Row::worth);
    for (auto i = static_cast<std::size_t>(end - rows.begin()); i != none; i = rows[i].before)
        stays[i] = true;
    return stays;
}

}  // namespace

// Long lists are as a rule in order.
std::vector<bool> staying(std::span<const Move> moves) {
    if (std::ranges::is_sorted(moves, {}, &Move::to)) return std::vector<bool>(moves.size(), true);
    return longest(moves);
}

}  // namespace korvane::review
