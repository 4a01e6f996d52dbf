#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

namespace korvane {

// Tells the operator since when what they see has been old.
class StaleStatus {
  public:
    static constexpr std::uint32_t freshMs = 5000;

    // What the page says of a status of this age at this time of the computer's clock; empty while
    // it is fresh. The time said stays the same until the next status.
    std::string line(std::uint32_t ageMs, std::time_t now);

  private:
    std::optional<std::time_t> since_;
};

}  // namespace korvane
