#pragma once

#include <string>

namespace korvane::text_form {

// What is wrong with a text: where, by path ("network.otherNetworks[2].bandwidth") or, of wrong
// syntax, as "line 3, column 7"; and why, in words that go on from there ("is missing").
struct Problem {
    std::string place, reason;

    std::string sentence() const { return (place.empty() ? "the text" : place) + ' ' + reason; }
};

}  // namespace korvane::text_form
