#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "review/moves.h"
#include "text_form/json.h"

// The text form's lists of records, and what a person calls one of them.

namespace korvane::review {

using text_form::Json;

// A list of records: what one of them is called, by which of its fields, and what else is said of
// one that comes or goes. The name of one that stands alone says where it is; one that roams can go
// from one list to another.
struct ListNames {
    std::string_view parent, key, noun;
    std::vector<const char*> ids, shown;
    enum { InPlace, Alone, Roaming } kind = InPlace;
};

// Null for what is no list of records. The parent is the key of what the list is in.
const ListNames* namesOf(std::string_view parent, std::string_view key);

// "7", "101, 20".
std::string fieldsText(const Json& record, const std::vector<const char*>& keys);

// "frame 7", "pair (101, 20)".
std::string idOf(const Json& record, const ListNames& names);

// All ids of a list. A second record of the same id is its own, or a difference of the two would be
// nobody's.
std::vector<std::string> namesIn(const Json& list, const ListNames& names);

// The places of the names that are in both, in the order of `before`. No name stands in one twice.
std::vector<Move> matchesOf(const std::vector<std::string>& before,
                            const std::vector<std::string>& after);

}  // namespace korvane::review
