#pragma once

#include <string>
#include <vector>

namespace korvane::bench {

// One claim: `work` takes at most `target` times as long as `floor`, both names of benchmarks.
struct Ratio {
    std::string work;
    std::string floor;
    double target;
};

// Runs all registered benchmarks several times, takes the fastest run of each (the others measure
// the machine's other guests) and prints each ratio beside its target. 0, or 1 when a ratio misses
// its target or a benchmark did not run.
int runAndReport(int argc, char** argv, const std::vector<Ratio>& ratios);

}  // namespace korvane::bench
