#pragma once

#include <array>
#include <string>

#include "device/status_source.h"
#include "resources/ids.h"

namespace korvane {

enum class Lamp { Unchanged, Normal, Alarm };

// The picture of each, by its number; Unchanged has none.
inline constexpr std::array<int, 3> lampPictures = {0, IDB_LAMP_GREEN, IDB_LAMP_RED};
static_assert(lampPictures.size() == static_cast<std::size_t>(Lamp::Alarm) + 1);

// The lamp of an input, and the alarm bit that it shows. Bits 0 to 2 and 7 have no lamp.
struct InputLamp {
    int control;
    std::size_t alarmBit;
};
inline constexpr std::array<InputLamp, 4> inputLamps = {{
    {IDC_LAMP_DATA_INPUT, 3},
    {IDC_LAMP_1PPS, 4},
    {IDC_LAMP_10M, 5},
    {IDC_LAMP_TOD, 6},
}};

// What the lamps are to change to.
struct Lamps {
    static constexpr std::size_t inputCount = inputLamps.size();
    std::array<Lamp, inputCount> inputs{};  // in the order of their lamps
    Lamp link = Lamp::Unchanged;
};

// A lost link leaves the inputs' lamps as they are: nothing is known about them.
Lamps lamps(const StatusSource& source);

// The line with the device's time of day.
std::string timeOfDayLine(const StatusSource& source);

}  // namespace korvane
