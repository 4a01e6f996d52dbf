#pragma once

#include "simulator/simulator_options.h"

namespace korvane {

// Runs the simulator until it is asked to end by signal or by its console; the exit code.
int runSimulator(const SimulatorOptions& options);

}  // namespace korvane
