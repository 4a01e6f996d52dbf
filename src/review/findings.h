#pragma once

#include <string>
#include <vector>

#include "model/configuration.h"

namespace korvane {

// A rule that a configuration breaks. An error is what the panel's editors refuse, or what
// something is lost by, be it a record without a place or a component's stream; a warning is what
// they let pass, though it is hardly meant.
struct Finding {
    enum class Severity { Error, Warning };

    Severity severity;
    std::string place;     // "frame 3, service 101"
    std::string sentence;  // with the panel's own words in quotes, where the rule is the panel's
};

// Of every rule that the editors hold, and of those that only a whole can break.
std::vector<Finding> findingsOf(const Configuration& configuration);

}  // namespace korvane
