#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "simulator/answer.h"
#include "simulator/fault_plan.h"

namespace korvane {

// Random numbers that are the same on every system for the same seed.
using Random = std::mt19937;

// The datagrams of one answer: one, or an announcement and a train paced as the panel expects it,
// with the faults that are in force for the command. Appends to `log` what the faults did.
std::vector<OutgoingDatagram> frameAnswer(std::uint32_t command, const Answer& answer,
                                          const Endpoint& to, std::uint64_t nowMs,
                                          FaultPlan& faults, Random& random, std::string& log);

// Whether a chance of `percent` in a hundred came true.
bool strikes(Random& random, std::uint32_t percent);

}  // namespace korvane
