#pragma once

#include <array>
#include <string>

#include "device/status_source.h"

namespace korvane {

enum class Lamp { Unchanged, Normal, Alarm };

// What the lamps are to change to.
struct Lamps {
    static constexpr std::size_t inputCount = 4;
    std::array<Lamp, inputCount> inputs{};  // data input, 1PPS, 10M, TOD
    Lamp link = Lamp::Unchanged;
};

// A lost link leaves the inputs' lamps as they are: nothing is known about them.
Lamps lamps(const StatusSource& source);

// The line with the device's time of day.
std::string timeOfDayLine(const StatusSource& source);

}  // namespace korvane
